#include "core/insight/trace_export.h"

#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

class TraceExportTest : public TracedLinkTest {
protected:
    TraceExportTest() {
        send("05 00 23 03 00 02 02 0B 22 ", 10);
        receive("00 05 A3 04 34 12 CD AB 47 42 ", 23);
        clock.advance(100);
        wire.failWrite(RuntimeError(8020, "Write \"error\""));
        EXPECT_TRUE(link.startRequest());
        EXPECT_THROW(link.SendRequest({1, 2}, 10), RuntimeError);
    }

    std::vector<Trace::Number> all() const {
        std::vector<Trace::Number> numbers;
        for (Trace::Number number = trace.begin(); number < trace.end() + 3; ++number) {
            numbers.push_back(number); // those behind the end are left out
        }
        return numbers;
    }
    std::string exported(TraceForm form) const {
        std::string text;
        exportTrace(trace, all(), form, names, [&text](std::string_view part) { text += part; });
        return text;
    }

    const RegisterNames names = RegisterNames::parse("W 0000,\"level, m\"\n");

    static std::vector<std::string> linesOf(const std::string& text, const std::string& end) {
        std::vector<std::string> lines;
        for (std::size_t begin = 0; begin < text.size();) {
            const auto next = text.find(end, begin);
            lines.push_back(text.substr(begin, next - begin));
            begin = next + end.size();
        }
        return lines;
    }
};

TEST_F(TraceExportTest, TextStandsInColumns) {
    const auto lines = linesOf(exported(TraceForm::Text), "\n");
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_TRUE(lines[0].starts_with("Time         Delta ms  Direction ")) << lines[0];
    EXPECT_EQ(lines[0].find("Kind"), lines[3].find("answer to word read"));
}

TEST_F(TraceExportTest, HexHasTheBytesOfLinesThatHaveAny) {
    EXPECT_EQ(exported(TraceForm::Hex), "05 00 23 03 00 02 02 0B 22\n00 05 A3 04 34 12 CD AB 47 42\n01 02\n");
}

TEST_F(TraceExportTest, CsvQuotesWhatNeedsIt) {
    const auto lines = linesOf(exported(TraceForm::Csv), "\r\n");
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0], "Time,Delta ms,Direction,Kind,Station,Registers,Bytes,What became of it");
    EXPECT_TRUE(
        lines[2].find(",0.000,sent,word read,0 to 5,\"W 0000 (level, m) .. W 0001\",05 00 23 03 00 02 02 0B "
                      "22,Answered 23 ms later.") != std::string::npos)
        << lines[2];
    EXPECT_TRUE(lines[4].ends_with("\"Not sent. Write \"\"error\"\"\"")) << lines[4];
}

TEST_F(TraceExportTest, JsonHasAnObjectALine) {
    const auto lines = linesOf(exported(TraceForm::JsonLines), "\n");
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[2], "{\"number\":2,\"time\":\"2027-01-15T08:00:00.023000Z\",\"deltaMs\":23.0,"
                        "\"direction\":\"received\",\"kind\":\"answer to word read\",\"stations\":\"5 to 0\","
                        "\"registers\":\"W 0000 (level, m) .. W 0001\",\"size\":10,"
                        "\"bytes\":\"0005A3043412CDAB4742\",\"wrong\":false,"
                        "\"verdict\":\"Taken: it has the 10 bytes that were awaited.\"}");
}

TEST_F(TraceExportTest, JsonIsEscapedAndOfUtf8) {
    const auto named = [this](const std::string& name) {
        std::string text;
        exportTrace(trace, {2}, TraceForm::JsonLines, RegisterNames::parse("W 0000," + name),
                    [&text](std::string_view part) { text += part; });
        const std::string before = R"("registers":"W 0000 ()";
        const auto begin = text.find(before) + before.size();
        return text.substr(begin, text.find(") .. W 0001") - begin);
    };
    EXPECT_EQ(named("a\"b\\c\t\x01"), "a\\\"b\\\\c\\t\\u0001");
    EXPECT_EQ(named("m\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), "m\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    const std::string bad = "\xEF\xBF\xBD";
    EXPECT_EQ(named("\xC3"), bad);
    EXPECT_EQ(named("\xC0\x80"), bad + bad);
    EXPECT_EQ(named("\xED\xA0\x80"), bad + bad + bad);
    EXPECT_EQ(named("\xE2\x82x"), bad + "x");
}

TEST_F(TraceExportTest, SomeLinesAtATimeGiveTheSame) {
    for (const TraceForm form : {TraceForm::Text, TraceForm::Csv, TraceForm::JsonLines, TraceForm::Pcapng}) {
        TraceExport steps(trace, all(), form, names);
        std::string text;
        std::size_t expected = 0;
        bool isMore = true;
        while (isMore) {
            isMore = steps.write([&text](std::string_view part) { text += part; }, 2);
            expected = std::min(expected + 2, steps.size());
            EXPECT_EQ(steps.done(), expected);
        }
        EXPECT_EQ(text, exported(form));
        EXPECT_EQ(steps.size(), 7U);
        EXPECT_EQ(steps.written(), form == TraceForm::Pcapng ? 2U : 4U);
    }
}

TEST_F(TraceExportTest, NoLinesGiveAHeading) {
    std::string text;
    EXPECT_EQ(exportTrace(trace, {}, TraceForm::Csv, names, [&text](std::string_view part) { text += part; }),
              0U);
    EXPECT_EQ(linesOf(text, "\r\n").size(), 1U);
}

/// A number of a capture, low byte first.
std::uint64_t numberAt(const std::string& text, std::size_t at, std::size_t bytes) {
    std::uint64_t number = 0;
    for (std::size_t count = bytes; count-- > 0;) {
        number = number << 8U | static_cast<unsigned char>(text.at(at + count));
    }
    return number;
}

TEST_F(TraceExportTest, CaptureHoldsWhatWentOverTheLine) {
    const std::string capture = exported(TraceForm::Pcapng);
    std::vector<std::size_t> packets;
    std::size_t at = 0;
    for (; at < capture.size(); at += numberAt(capture, at + 4, 4)) {
        ASSERT_EQ(numberAt(capture, at + 4, 4), numberAt(capture, at + numberAt(capture, at + 4, 4) - 4, 4));
        if (numberAt(capture, at, 4) == 6) {
            packets.push_back(at);
        }
    }
    EXPECT_EQ(at, capture.size());
    EXPECT_EQ(numberAt(capture, 0, 4), 0x0A0D0D0AU);
    ASSERT_EQ(packets.size(), 2U); // neither the event nor what was not sent
    const std::size_t answer = packets[1];
    EXPECT_EQ(numberAt(capture, answer + 12, 4) << 32U | numberAt(capture, answer + 16, 4),
              1'800'000'000'023'000U);
    EXPECT_EQ(numberAt(capture, answer + 20, 4), 10U);
    EXPECT_EQ(numberAt(capture, answer + 24, 4), 10U);
    EXPECT_NE(capture.find("Taken: it has the 10 bytes", answer), std::string::npos);
    EXPECT_NE(capture.find(std::string("\2\0\4\0\1\0\0\0", 8), answer), std::string::npos);
    EXPECT_NE(capture.find(std::string("\2\0\4\0\2\0\0\0", 8), packets[0]), std::string::npos);
}

} // namespace
} // namespace varda::test
