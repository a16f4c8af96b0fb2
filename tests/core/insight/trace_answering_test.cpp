#include "core/insight/traced_link.h"

#include <algorithm>
#include <cctype>

namespace varda::test {
namespace {

class TraceAnswering : public TracedLinkTest {};

TEST_F(TraceAnswering, RequestThatStillComesInIsThrownAwayWithTheSimulation) {
    link.enterMode(Mode::Simulation);
    receive(wordRead);
    link.enterMode(Mode::WordRead);
    EXPECT_EQ(verdict(1), "Thrown away unread, when the simulation was left.");
}

TEST_F(TraceAnswering, BytesBehindARequestAreThrownAwayWithIt) {
    link.setRoles({.answerTo = [this](std::span<const std::uint8_t>) {
        wire.receiveSilently({1, 2});
        return std::optional<PreparedAnswer>();
    }});
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    EXPECT_EQ(verdict(2),
              "Thrown away unread, when the request before it had been dealt with. It is too short "
              "for a frame.");
}

TEST_F(TraceAnswering, KnownRequestOnAPortThatWasClosedMeanwhileIsNotAnswered) {
    link.setRoles({.answerTo = [this](std::span<const std::uint8_t>) {
        port.close();
        return std::optional(PreparedAnswer{.pair = 4, .bytes = bytesOfText(wordAnswer)});
    }});
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    EXPECT_EQ(verdict(1),
              "Known, by prepared pair 5, but nothing was sent: the port is closed or did not take the "
              "answer, or the answer is no frame.");
    EXPECT_EQ(lines(), 3U); // the closing is the last one
}

TEST_F(TraceAnswering, RequestToTheMemoryOnAPortThatWasClosedMeanwhileIsNotAnswered) {
    link.setRoles({.answerTo = [this](std::span<const std::uint8_t>) {
        port.close();
        return std::optional(PreparedAnswer{.pair = std::nullopt, .bytes = bytesOfText(wordAnswer)});
    }});
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    EXPECT_EQ(
        verdict(1),
        "Known, by the controller's memory, but nothing was sent: the port is closed or did not take the "
        "answer, or the answer is no frame.");
}

TEST_F(TraceAnswering, AnswerThatThePortRefusedHidesNoLaterRefusal) {
    table.addPair(hexRun(bytesOfText(wordRead)), hexRun(bytesOfText(wordAnswer)));
    link.enterMode(Mode::Simulation);
    wire.failWrite(RuntimeError(8020, "Write error"));
    hear(wordRead);
    EXPECT_EQ(verdict(2), "Not sent. Write error");
    link.enterMode(Mode::Scenario);
    port.close();
    link.sendScenarioFrame(bytesOfText(wordRead), 10);
    EXPECT_EQ(verdict(lines() - 1), "Not sent. The port is closed.");
}

TEST_F(TraceAnswering, StuckAfterAnUnknownRequestSaysSo) {
    const std::string after =
        " It came while the link was stuck after a request that no pair answers: its timer had stood still.";
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    EXPECT_FALSE(line(1).whileStuck);
    hear(wordRead);
    EXPECT_EQ(verdict(2), "No prepared request matches. None is prepared." + after);
    table.addPair(hexRun(bytesOfText(wordRead)), hexRun(bytesOfText(wordAnswer)));
    hear(wordRead);
    EXPECT_EQ(verdict(3), "Answered by prepared pair 1." + after);
    hear(wordRead);
    EXPECT_EQ(verdict(5), "Answered by prepared pair 1.");
}

TEST_F(TraceAnswering, StuckAfterARequestFromBeforeTheTraceSaysSoToo) {
    recorder.close();
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    recorder.open();
    hear(wordRead);
    EXPECT_TRUE(line(lines() - 1).afterUnknown);
    EXPECT_TRUE(line(lines() - 1).whileStuck);
}

TEST_F(TraceAnswering, PreparedPairAnswers) {
    table.addPair("050023030002020000", "00");
    table.addPair(hexRun(bytesOfText(wordRead)), hexRun(bytesOfText(wordAnswer)));
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    ASSERT_EQ(lines(), 3U);
    EXPECT_EQ(verdict(1), "Answered by prepared pair 2.");
    EXPECT_EQ(verdict(2), "The answer of prepared pair 2.");
    EXPECT_EQ(*line(2).request, bytesOfText(wordRead));
    EXPECT_FALSE(isWrong(1) || isWrong(2));
}

TEST_F(TraceAnswering, PairWhoseAnswerIsNoFrameSendsNothing) {
    table.addPair(hexRun(bytesOfText(wordRead)), "xy");
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    EXPECT_EQ(verdict(1),
              "Known, by prepared pair 1, but nothing was sent: the port is closed or did not take the "
              "answer, or the answer is no frame.");
}

TEST_F(TraceAnswering, UnknownRequestNamesTheNearestPairAndTheByte) {
    table.addPair("0500210300000200 00", "00");
    table.addPair("0500230300020512A0", "00");
    link.enterMode(Mode::Simulation);
    hear("05 00 23 03 00 02 04 8B 20 ");
    EXPECT_EQ(verdict(1),
              "No prepared request matches. The nearest is prepared pair 2, which differs in byte 6 (count: "
              "04h came, 05h is prepared).");
    EXPECT_TRUE(isWrong(1));
    hear("05 00 23 03 00 ");
    EXPECT_TRUE(verdict(2).starts_with(
        "No prepared request matches. The nearest is prepared pair 2, which has 9 bytes, "
        "not 5."))
        << verdict(2);
    EXPECT_TRUE(line(2).whileStuck);
}

TEST_F(TraceAnswering, PairInSmallLettersIsTheSameAndDoesNotMatch) {
    const Bytes request = checked(bytesOfText("05 AB 23 03 CD EF 02 "));
    std::string small = hexRun(request);
    std::ranges::transform(small, small.begin(),
                           [](unsigned char digit) { return static_cast<char>(std::tolower(digit)); });
    table.addPair("05AB2303CDEF030000", "00"); // of another count
    table.addPair(small, "00");
    link.enterMode(Mode::Simulation);
    hear(hexGroups(request).c_str());
    EXPECT_EQ(verdict(1),
              "No prepared request matches. The nearest is prepared pair 2, which is the same, but "
              "written in small letters.");
}

TEST_F(TraceAnswering, SmallLettersMakeNoPairLessNear) {
    table.addPair("05AB23030000020000", "00"); // two bytes differ
    table.addPair("05ab2303cdef030000", "00"); // one does
    link.enterMode(Mode::Simulation);
    hear(hexGroups(checked(bytesOfText("05 AB 23 03 CD EF 02 "))).c_str());
    EXPECT_EQ(verdict(1),
              "No prepared request matches. The nearest is prepared pair 2, which differs in byte 6 "
              "(count: 02h came, 03h is prepared).");
}

TEST_F(TraceAnswering, RequestThatTheProgramCutsIsNotSaidToHaveTheLengthOfThePair) {
    const std::size_t looked = link.state().RxBuffer.size();
    table.addPair(hexRun(Bytes(looked, 0x77)), "00");
    link.enterMode(Mode::Simulation);
    receive(hexGroups(Bytes(looked + 5, 0x77)).c_str());
    clock.advance(300);
    EXPECT_TRUE(
        verdict(1).starts_with("No prepared request matches. The nearest is prepared pair 1, which begins "
                               "like it, but of the 1030 bytes that came no more than 1025 are looked "
                               "at."))
        << verdict(1);
}

TEST_F(TraceAnswering, UnknownRequestWithoutAnyPairSaysSo) {
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    EXPECT_EQ(verdict(1), "No prepared request matches. None is prepared.");
}

TEST_F(TraceAnswering, NearestPairIsFoundHoweverFarItIs) {
    table.addPair("nonsense", "00");
    link.enterMode(Mode::Simulation);
    hear(wordRead);
    EXPECT_EQ(verdict(1), "No prepared request matches. None of those prepared is a frame.");
    table.addPair(hexRun(Bytes(40, 0x77)), "00");
    hear("05 ");
    EXPECT_TRUE(verdict(2).starts_with(
        "No prepared request matches. The nearest is prepared pair 2, which differs in "
        "byte 0 (DA: 05h came, 77h is prepared)."))
        << verdict(2);
}

} // namespace
} // namespace varda::test
