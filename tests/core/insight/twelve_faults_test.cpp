#include "core/insight/traced_link.h"

#include "core/protocol/independent_encoder.h"

namespace varda::test {
namespace {

constexpr const char* wordRead = "05 00 23 03 00 02 02 0B 22 "; // two words from W 0000 of station 5
constexpr const char* wordAnswer = "00 05 A3 04 34 12 CD AB 47 42 ";

/// The faults of real lines, as a far end plays them, and what the trace says of each.
class TwelveFaults : public TracedLinkTest {
protected:
    static std::string checked(const char* text) { return hexGroups(test::checked(bytesOfText(text))); }
    void ask() { send(wordRead, 10); }
    void answer(const std::string& bytes, int after = 10) {
        receive(bytes.c_str(), after);
        clock.advance(100);
    }
    std::string last() const { return verdict(lines() - 1); }
};

TEST_F(TwelveFaults, WrongStation) {
    ask();
    answer(checked("00 07 A3 04 34 12 CD AB "));
    EXPECT_EQ(
        last(),
        "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. It comes from station 7; "
        "station 5 was asked.");
}

TEST_F(TwelveFaults, WrongCheck) {
    ask();
    answer("00 05 A3 04 34 12 CD AB 47 43 ");
    EXPECT_EQ(
        last(),
        "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. The check is 4347h; of "
        "the bytes before it, it is 4247h.");
}

TEST_F(TwelveFaults, ShortAnswer) {
    ask();
    answer(checked("00 05 A3 02 34 12 "));
    EXPECT_EQ(last(),
              "Dropped: 8 of 10 bytes had come when it was read. The body has 2 bytes; 4 belong to what was "
              "asked.");
}

TEST_F(TwelveFaults, LongAnswer) {
    ask();
    answer(checked("00 05 A3 06 34 12 CD AB 01 02 "));
    EXPECT_EQ(
        last(),
        "Dropped: 12 bytes, 2 more than were awaited. The body has 6 bytes; 4 belong to what was asked.");
}

TEST_F(TwelveFaults, AnswerSplitBy120Milliseconds) {
    ask();
    answer("00 05 A3 04 34 12 CD ");
    answer("AB 47 42 ", 20);
    EXPECT_EQ(verdict(2),
              "Dropped: 7 of 10 bytes had come when it was read. The rest came 120 ms later. The frame is "
              "cut: 3 bytes are missing.");
    EXPECT_EQ(verdict(3),
              "Dropped: the last 3 of 10 bytes; those before them had been dropped already, for pieces are "
              "not put together.");
}

TEST_F(TwelveFaults, LateAnswer) {
    ask();
    clock.advance(6500);
    tick(13);
    answer(wordAnswer, 312);
    EXPECT_EQ(last(), "Dropped: it came 6812 ms after the request, when the wait for the answer had ended.");
}

TEST_F(TwelveFaults, AnswerTwice) {
    ask();
    answer(std::string(wordAnswer) + wordAnswer);
    EXPECT_EQ(last(), "Dropped: 20 bytes, 10 more than were awaited. It is the same frame twice.");
    ask();
    answer(wordAnswer);
    answer(wordAnswer);
    EXPECT_EQ(last(), "Taken once more: the request had its answer already, and this has its length, too.");
}

TEST_F(TwelveFaults, EchoOfTheRequest) {
    ask();
    answer(std::string(wordRead) + wordAnswer);
    EXPECT_EQ(
        last(),
        "Dropped: 19 bytes, 9 more than were awaited. It begins with the request itself: the line brings "
        "back what is sent.");
}

TEST_F(TwelveFaults, TwoMasters) {
    ask();
    answer(checked("09 02 21 03 00 00 08 "));
    EXPECT_EQ(
        last(),
        "Dropped: 9 of 10 bytes had come when it was read. It is a bit read for station 9: another master "
        "asks on this line.");
}

TEST_F(TwelveFaults, LineOf7Bits) {
    ask();
    answer("00 05 23 04 34 12 4D 2B 47 42 ");
    EXPECT_EQ(
        last(),
        "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. Every byte lacks its top "
        "bit: the line seems to carry 7 data bits.");
}

TEST_F(TwelveFaults, Noise) {
    ask();
    answer("F7 00 81 FE 3C ");
    EXPECT_EQ(last(), "Dropped: 5 of 10 bytes had come when it was read. It is no frame of this protocol.");
}

TEST_F(TwelveFaults, AnotherControllersKind) {
    ask();
    answer(checked("05 03 04 12 34 AB CD 77 "));
    EXPECT_EQ(
        last(),
        "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. Its check is right, but "
        "04h is no command of this protocol: another kind of controller may be speaking.");
}

TEST_F(TwelveFaults, AnswerToSomethingElse) {
    ask();
    answer(checked("00 05 A1 04 FF 00 FF 00 "));
    EXPECT_EQ(
        last(),
        "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. It is an answer to bit "
        "read, and a word read was sent.");
}

} // namespace
} // namespace varda::test
