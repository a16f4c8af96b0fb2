#include "core/faults/fault_injector.h"

#include "core/protocol/hex_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>

namespace varda::test {
namespace {

using namespace std::chrono_literals;

constexpr int answers = 10'000;
const Bytes answer = readHexRun("00FFA3080000000000000000C658").value();

/// What becomes of 10,000 answers, one every 100 ms.
struct Outcome {
    int struck = 0;
    int sent = 0;
    int changed = 0;
    std::vector<std::uint64_t> frames; ///< those that were struck
    std::vector<std::chrono::milliseconds> times;
    std::vector<std::size_t> sizes;
};

Outcome outcomeOf(const char* plan, std::uint64_t seed = 7) {
    FaultInjector injector;
    injector.setPlan(parseFaults(plan), seed);
    Outcome outcome;
    injector.setWatcher([&outcome](const FaultDone& fault) {
        ++outcome.struck;
        outcome.frames.push_back(fault.frame);
    });
    Clock::Time now;
    for (int count = 0; count < answers; ++count, now += 100ms) {
        const FaultyFrame sent = injector.send(answer, now);
        outcome.sent += sent.pieces.empty() ? 0 : 1;
        if (!sent.pieces.empty()) {
            outcome.changed += sent.pieces.front().bytes != answer ? 1 : 0;
            outcome.times.push_back(sent.pieces.front().after);
            outcome.sizes.push_back(sent.pieces.front().bytes.size());
        }
    }
    return outcome;
}

/// Within five standard deviations of so many of 10,000.
void expectShare(int found, double share, const char* plan) {
    const double deviation = std::sqrt(answers * share * (1 - share));
    EXPECT_NEAR(found, answers * share, 5 * deviation) << plan;
}

TEST(FaultDistribution, EachNthIsExactlyEachNth) {
    for (const FaultRule& rule : faultRules()) {
        if (rule.kind == FaultKind::Silence || rule.kind == FaultKind::HangUp) {
            continue;
        }
        const std::string plan = std::string(rule.name) + "@7th";
        const Outcome outcome = outcomeOf(plan.c_str());
        ASSERT_EQ(outcome.struck, answers / 7) << plan;
        for (std::size_t index = 0; index < outcome.frames.size(); ++index) {
            ASSERT_EQ(outcome.frames[index], 7 * (index + 1)) << plan;
        }
    }
}

TEST(FaultDistribution, AShareIsThatShare) {
    for (const FaultRule& rule : faultRules()) {
        if (rule.kind == FaultKind::Silence || rule.kind == FaultKind::HangUp) {
            continue;
        }
        for (const auto& [rate, share] : {std::pair("@1%", 0.01), std::pair("@30%", 0.3)}) {
            const std::string plan = std::string(rule.name) + rate;
            expectShare(outcomeOf(plan.c_str()).struck, share, plan.c_str());
        }
    }
}

TEST(FaultDistribution, OnlyOneIsOnlyOne) {
    const Outcome outcome = outcomeOf("check@only20");
    EXPECT_EQ(outcome.frames, std::vector<std::uint64_t>{20});
    EXPECT_EQ(outcome.changed, 1);
}

TEST(FaultDistribution, DroppedAnswersAreNotSent) {
    EXPECT_EQ(outcomeOf("drop@4th").sent, answers - answers / 4);
    EXPECT_EQ(outcomeOf("drop").sent, 0);
}

TEST(FaultDistribution, LatenessFillsItsRangeEvenly) {
    const Outcome outcome = outcomeOf("late=50..149");
    std::vector<int> counts(10);
    for (const auto time : outcome.times) {
        ASSERT_GE(time, 50ms);
        ASSERT_LE(time, 149ms);
        ++counts[static_cast<std::size_t>((time - 50ms) / 10ms)];
    }
    for (const int count : counts) {
        expectShare(count, 0.1, "late=50..149");
    }
    for (const auto time : outcomeOf("late=120").times) {
        ASSERT_EQ(time, 120ms);
    }
}

TEST(FaultDistribution, CutsAndNoiseFillTheirRanges) {
    for (const char* const plan : {"cut=1..4", "noise-before=1..4", "noise-behind=1..4"}) {
        std::vector<int> counts(5);
        for (const std::size_t size : outcomeOf(plan).sizes) {
            ++counts.at(size > answer.size() ? size - answer.size() : answer.size() - size);
        }
        EXPECT_EQ(counts[0], 0) << plan;
        for (std::size_t bytes = 1; bytes <= 4; ++bytes) {
            expectShare(counts[bytes], 0.25, plan);
        }
    }
}

TEST(FaultDistribution, ASilenceLastsAsLongAsItSays) {
    const Outcome outcome = outcomeOf("silence=950@only20");
    EXPECT_EQ(outcome.sent, answers - 10) << "answers 20 .. 29, every 100 ms";
    EXPECT_EQ(outcome.frames.front(), 20U);
    EXPECT_EQ(outcome.frames.back(), 29U);
}

TEST(FaultDistribution, AHangUpIsTold) {
    FaultInjector injector;
    injector.setPlan(parseFaults("hangup@3rd"), 1);
    EXPECT_FALSE(injector.send(answer, {}).hangsUp);
    EXPECT_FALSE(injector.send(answer, {}).hangsUp);
    const FaultyFrame sent = injector.send(answer, {});
    EXPECT_TRUE(sent.hangsUp);
    EXPECT_TRUE(sent.pieces.empty());
    EXPECT_EQ(sent.done.at(0).text, "answer 3: the line hung up");
}

/// Everything that a plan does to 2,000 answers, as one text.
std::string everything(const char* plan, std::uint64_t seed) {
    FaultInjector injector;
    injector.setPlan(parseFaults(plan), seed);
    std::string text;
    Clock::Time now;
    for (int count = 0; count < 2000; ++count, now += 100ms) {
        for (const FaultyFrame::Piece& piece : injector.send(answer, now).pieces) {
            text += std::to_string(piece.after.count()) + ' ' + hexRun(piece.bytes) + '\n';
        }
    }
    return text;
}

TEST(FaultDistribution, TheSameSeedDoesTheSame) {
    constexpr const char* all = "drop@5%,command@5%,station@5%,check@5%,flip=1..3@5%,cut@5%,noise-before@5%,"
                                "noise-behind@5%,double=0..9@5%,split@5%,late@5%,silence=300@1%";
    EXPECT_EQ(everything(all, 1234), everything(all, 1234));
    EXPECT_NE(everything(all, 1234), everything(all, 1235));
}

TEST(FaultDistribution, TheNumbersAreTheSameOnEverySystem) {
    FaultDraws draws(1, FaultKind::Drop);
    std::vector<std::uint64_t> drawn;
    for (int count = 0; count < 4; ++count) {
        drawn.push_back(draws.below(1000));
    }
    EXPECT_EQ(drawn, (std::vector<std::uint64_t>{198, 615, 196, 347}));
}

TEST(FaultDistribution, WithNoFaultOnEveryFrameIsAsItWas) {
    FaultInjector injector;
    const FaultyFrame sent = injector.send(answer, {});
    ASSERT_EQ(sent.pieces.size(), 1U);
    EXPECT_EQ(sent.pieces.front().bytes, answer);
    EXPECT_EQ(sent.pieces.front().after, 0ms);
    EXPECT_TRUE(sent.done.empty());
}

TEST(FaultDistribution, ANewPlanBeginsAnew) {
    FaultInjector injector;
    injector.setPlan(parseFaults("drop@2nd"), 1);
    injector.send(answer, {});
    injector.setPlan(parseFaults("drop@2nd"), 1);
    EXPECT_FALSE(injector.send(answer, {}).pieces.empty());
    EXPECT_TRUE(injector.send(answer, {}).pieces.empty());
}

TEST(FaultDistribution, PiecesKeepTheirOrderAndTheirBytes) {
    FaultInjector injector;
    injector.setPlan(parseFaults("double=1000,split=200,late=50"), 3);
    const FaultyFrame sent = injector.send(answer, {});
    ASSERT_EQ(sent.pieces.size(), 3U);
    EXPECT_EQ(sent.pieces[0].after, 50ms);
    EXPECT_EQ(sent.pieces[1].after, 250ms);
    EXPECT_EQ(sent.pieces[2].after, 1250ms);
    Bytes whole = sent.pieces[0].bytes;
    whole.insert(whole.end(), sent.pieces[1].bytes.begin(), sent.pieces[1].bytes.end());
    EXPECT_EQ(whole, answer);
    EXPECT_EQ(sent.pieces[2].bytes, answer);
    ASSERT_EQ(sent.done.size(), 3U);
    EXPECT_EQ(sent.done[2].text, "answer 1: 50 ms late");
}

} // namespace
} // namespace varda::test
