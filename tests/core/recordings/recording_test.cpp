#include "core/recordings/recording.h"

#include "core/insight/traced_link.h"
#include "core/recordings/recording_files.h"
#include "core/recordings/recordings.h"
#include "core/runs/scenario_frame.h"

#include <gtest/gtest.h>

#include <numeric>

namespace varda::test {
namespace {

using Exchanges = std::vector<RecordedExchange>;
using Texts = std::vector<std::string>;

RecordedExchange exchangeAt(std::chrono::microseconds time, const Bytes& request,
                            std::optional<Bytes> answer) {
    return {recordingBegin + time, request, std::move(answer)};
}

TEST(Recording, PairsRequestsWithTheirAnswers) {
    const Recording recording = {sentAt(0ms, wordRequest), receivedAt(20ms, wordAnswer),
                                 sentAt(500ms, bitRequest)};
    EXPECT_EQ(exchangesOf(recording), (Exchanges{exchangeAt(0ms, wordRequest, wordAnswer),
                                                 exchangeAt(500ms, bitRequest, std::nullopt)}));
}

TEST(Recording, OfASimulatorAndOfAListenerGivesTheSame) {
    const Exchanges wanted = {exchangeAt(0ms, wordRequest, wordAnswer)};
    EXPECT_EQ(exchangesOf({receivedAt(0ms, wordRequest), sentAt(20ms, wordAnswer)}), wanted);
    EXPECT_EQ(exchangesOf({receivedAt(0ms, wordRequest), receivedAt(20ms, wordAnswer)}), wanted);
    EXPECT_EQ(exchangesOf({receivedAt(0ms, joined(wordRequest, wordAnswer))}), wanted)
        << "heard as one burst";
}

TEST(Recording, OnlyTheFirstAnswerCounts) {
    const Recording recording = {receivedAt(0ms, wordAnswer), sentAt(1ms, wordRequest),
                                 receivedAt(20ms, {9, 9}), receivedAt(30ms, wordAnswer)};
    EXPECT_EQ(exchangesOf(recording), (Exchanges{exchangeAt(1ms, wordRequest, Bytes{9, 9})}));
}

TEST(Recording, WhatIsNoCommandIsARequestOfWhoSendsRequests) {
    const Recording recording = {sentAt(0ms, wordRequest), sentAt(1ms, {1, 2, 3})};
    EXPECT_EQ(exchangesOf(recording).size(), 2U);
    EXPECT_EQ(exchangesOf({receivedAt(0ms, wordRequest), sentAt(1ms, {1, 2, 3})}).at(0).answer,
              (Bytes{1, 2, 3}));
}

TEST(Recording, KeepsTheByteBehindAMixedRequest) {
    Bytes mixed = finished({0xFF, 0x00, 0x25, 0x02, 0x00, 0x42}, {}, {}).wire;
    mixed.push_back(0x00);
    EXPECT_EQ(exchangesOf({sentAt(0ms, mixed)}).at(0).request, mixed);
}

TEST(Recording, BecomesAScenarioWithWhatIsExpected) {
    const Recording recording = {sentAt(0ms, wordRequest), receivedAt(20ms, wordAnswer),
                                 sentAt(500ms, bitRequest)};
    const Texts lines = scenarioOf(recording);
    EXPECT_EQ(lines, (Texts{"FF 00 23 03 64 02 04 90 F0", "FF FF 21 03 00 00 08 BD 85"}));
    EXPECT_EQ(scenarioFrame(lines[0]), wordRequest);
    EXPECT_EQ(expectationsOf(recording), (Texts{"00 FF A3 08 00 00 00 00 00 00 00 00 C6 58", "silence"}));
}

TEST(Recording, BecomesPreparedPairsEachOnce) {
    const Bytes other = {1, 2};
    const RecordedPairs pairs =
        pairsOf({sentAt(0ms, wordRequest), sentAt(1ms, wordRequest), receivedAt(2ms, wordAnswer),
                 sentAt(3ms, wordRequest), receivedAt(4ms, other), sentAt(5ms, bitRequest)});
    EXPECT_EQ(pairs.requests, (Texts{"FF00230364020490F0"}));
    EXPECT_EQ(pairs.answers, (Texts{"00FFA3080000000000000000C658"}));
    EXPECT_EQ(pairs.unanswered, 1U);
    EXPECT_EQ(pairs.changing, 1U);
}

TEST(Recording, KnowsHowLongAnswersAre) {
    EXPECT_EQ(answerLengthOf(wordRequest), 14);
    EXPECT_EQ(answerLengthOf(bitRequest), 14);
    EXPECT_EQ(answerLengthOf(finished({1, 0, 0x21, 3, 0, 0, 0}, {}, {}).wire), 262) << "a count of 0 is 256";
    EXPECT_EQ(answerLengthOf(finished({1, 0, 0x24, 4, 0, 2, 7, 0}, {}, {}).wire), 7);
    EXPECT_EQ(answerLengthOf(finished({1, 0, 0x25, 4, 0, 0x42, 3, 0}, {}, {}).wire), 9) << "a word and a bit";
    EXPECT_EQ(answerLengthOf(wordAnswer), 0);
    EXPECT_EQ(answerLengthOf(Bytes{1, 2}), 0);
}

TEST(Recording, OfNothingIsNothing) {
    EXPECT_TRUE(scenarioOf({}).empty());
    EXPECT_TRUE(pairsOf({}).requests.empty());
    EXPECT_TRUE(exchangesOf({receivedAt(0ms, {1, 2, 3})}).empty());
}

using RecordingOfTraceTest = TracedLinkTest;

TEST_F(RecordingOfTraceTest, HasWhatWentOverTheLine) {
    send("FF 00 23 03 64 02 04 90 F0 ", 14);
    receive("00 FF A3 08 00 00 00 00 00 00 00 00 C6 58 ", 30);
    clock.advance(100);
    std::vector<Trace::Number> numbers(trace.size());
    std::iota(numbers.begin(), numbers.end(), trace.begin());
    const Recording recording = recordingOf(trace, numbers);
    EXPECT_EQ(recording, (Recording{sentAt(0ms, wordRequest), receivedAt(30ms, test::wordAnswer)}));
}

} // namespace
} // namespace varda::test
