#include "core/insight/pcapng.h"
#include "core/insight/trace_export.h"

#include "core/insight/drawn_frames.h"
#include "core/insight/traced_link.h"
#include "support/temporary_folder.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace varda::test {
namespace {

constexpr unsigned seed = 20261122;

/// What a program writes, line by line.
std::vector<std::string> outputOf(const std::string& command) {
    std::FILE* const pipe = popen(command.c_str(), "r");
    std::string text;
    std::array<char, 65536> part = {};
    for (std::size_t count = 0; (count = std::fread(part.data(), 1, part.size(), pipe)) > 0;) {
        text.append(part.data(), count);
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

class DissectorTest : public TracedLinkTest {
protected:
    void SetUp() override {
        if (std::system("command -v tshark >/dev/null 2>&1") != 0) {
            GTEST_SKIP() << "skipped: tshark is not installed";
        }
    }

    std::vector<std::string> readBack(const std::string& capture, const std::string& options) const {
        writeBytes(folder.file("capture.pcapng"), capture);
        return outputOf("env LC_ALL=C.UTF-8 HOME='" + folder.path() +
                        "' tshark -X lua_script:'" VARDA_DISSECTOR "' -r '" + folder.file("capture.pcapng") +
                        "' " + options + " 2>'" + folder.file("messages") + "'");
    }

    TemporaryFolder folder;
};

/// Seconds with six digits behind the point.
std::string epochSeconds(std::chrono::system_clock::time_point time) {
    using namespace std::chrono;
    const auto micro = duration_cast<microseconds>(time.time_since_epoch()).count();
    return std::to_string(micro / 1'000'000) + '.' + decimal(static_cast<int>(micro % 1'000'000), 6);
}

TEST_F(DissectorTest, ATraceIsReadBackWithItsTimesDirectionsAndVerdicts) {
    FrameDraws draws(seed);
    for (int round = 0; round < 200; ++round) {
        const DrawnExchange drawn = draws.exchange(round % FrameDraws::kinds);
        send(hexGroups(drawn.request).c_str(), static_cast<int>(drawn.answer.size()));
        clock.advance(std::chrono::milliseconds(1 + draws.draws().below(70)));
        wire.receiveAt(clock.now(), drawn.answer);
        wire.raiseReceived();
        clock.advance(100);
    }
    std::vector<Trace::Number> all;
    std::vector<std::string> expected;
    for (Trace::Number number = trace.begin(); number < trace.end(); ++number) {
        const TraceLine& line = *trace.find(number);
        all.push_back(number);
        if (line.direction != Direction::Event) {
            expected.push_back(epochSeconds(line.timeOfDay) + "000\t" +
                               (line.direction == Direction::Sent ? "2" : "1") + "\t" +
                               std::to_string(line.size) + "\t" + verdictInWords(trace, number));
        }
    }
    std::string capture;
    exportTrace(trace, all, TraceForm::Pcapng, noNames(), [&](std::string_view part) { capture += part; });
    const auto lines =
        readBack(capture, "-T fields -e frame.time_epoch -e frame.packet_flags_direction -e frame.len "
                          "-e frame.comment");
    ASSERT_EQ(lines.size(), 400U);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        std::string found = lines[index];
        if (const auto form = found.find("\t0x0000000"); form != std::string::npos) {
            found.erase(form + 1, 9);
        }
        ASSERT_EQ(found, expected[index]) << "packet " << index + 1;
    }
}

/// "place length words" of a field.
std::string shownField(std::size_t place, std::size_t length, const std::string& words) {
    return std::to_string(place) + ' ' + std::to_string(length) + ' ' + words;
}

std::vector<std::string> fieldsByDecoder(const std::vector<DecodedFrame>& frames) {
    std::vector<std::string> fields;
    for (const DecodedFrame& frame : frames) {
        fields.push_back("kind " + kindInWords(frame.kind));
        for (const Field& field : frame.fields) {
            fields.push_back(shownField(field.place, field.length, fieldInWords(frame, field)));
            if (field.point) {
                fields.push_back("register " + nameOf(*field.point));
            }
        }
        for (const Fault fault : frame.faults) {
            fields.push_back("fault " + faultInWords(frame, fault));
        }
    }
    return fields;
}

/// The value of an attribute; the words have no characters that XML writes another way.
std::string attribute(const std::string& element, const std::string& name) {
    const std::string before = ' ' + name + "=\"";
    const auto begin = element.find(before);
    if (begin == std::string::npos) {
        return {};
    }
    const auto value = begin + before.size();
    return element.substr(value, element.find('"', value) - value);
}

std::string fieldByDissector(const std::string& element) {
    const std::string name = attribute(element, "name");
    for (const std::string made : {"kind", "register", "fault"}) {
        if (name == "varda." + made) {
            return made + ' ' + attribute(element, "show");
        }
    }
    return attribute(element, "pos") + ' ' + attribute(element, "size") + ' ' +
           attribute(element, "showname");
}

/// Of every packet, what stands in its tree.
std::vector<std::vector<std::string>> fieldsByDissector(const std::vector<std::string>& pdml) {
    std::vector<std::vector<std::string>> packets;
    for (const std::string& line : pdml) {
        if (line.find("<packet>") != std::string::npos) {
            packets.emplace_back();
        } else if (line.find("<field name=\"varda.") != std::string::npos &&
                   line.find("varda.damaged") == std::string::npos) {
            packets.back().push_back(fieldByDissector(line));
        }
    }
    return packets;
}

/// Requests, their answers, both in one, whole, cut, damaged, and what is no frame at all.
Bytes drawBurst(FrameDraws& frames, DrawnExchange& drawn, int round) {
    Draws& draws = frames.draws();
    if (round % 2 == 0) {
        drawn = frames.exchange(draws.below(FrameDraws::kinds));
    }
    Bytes burst = round % 2 == 0 ? drawn.request : drawn.answer;
    switch (draws.below(10)) {
    case 0:
        burst.resize(1 + static_cast<std::size_t>(draws.below(static_cast<int>(burst.size()))));
        break;
    case 1:
        burst[static_cast<std::size_t>(draws.below(static_cast<int>(burst.size())))] =
            static_cast<std::uint8_t>(draws.below(256));
        break;
    case 2:
        burst.insert(burst.end(), drawn.answer.begin(), drawn.answer.end());
        break;
    case 3:
        for (std::uint8_t& byte : burst) {
            byte = static_cast<std::uint8_t>(draws.oneIn(3) ? 0x20 + draws.below(8) : draws.below(256));
        }
        break;
    default:
        break;
    }
    return burst;
}

TEST_F(DissectorTest, TenThousandRandomFramesHaveTheDecodersFields) {
    FrameDraws draws(seed);
    DrawnExchange drawn;
    Bytes request;
    std::string capture = captureHeading();
    std::vector<std::vector<std::string>> expected;
    for (int round = 0; round < 10'000; ++round) {
        const Bytes burst = drawBurst(draws, drawn, round);
        const auto frames = decodeBurst(burst, request);
        expected.push_back(fieldsByDecoder(frames));
        for (const DecodedFrame& frame : frames) {
            if (frame.kind.isRequest()) {
                request.assign(burst.begin() + static_cast<std::ptrdiff_t>(frame.begin),
                               burst.begin() + static_cast<std::ptrdiff_t>(frame.end));
            }
        }
        capture += captured({{}, round % 2 == 0, burst, burst.size(), {}});
    }
    const auto found = fieldsByDissector(readBack(capture, "-T pdml"));
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t index = 0; index < found.size(); ++index) {
        ASSERT_EQ(found[index], expected[index]) << "seed " << seed << ", packet " << index + 1;
    }
}

} // namespace
} // namespace varda::test
