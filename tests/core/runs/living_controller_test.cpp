#include "core/runs/living_controller.h"

#include "core/insight/traced_link.h"
#include "core/protocol/independent_encoder.h"
#include "core/protocol/random_draws.h"
#include "core/runs/unknown_requests.h"
#include "core/virtual/whole_memory.h"

#include <gtest/gtest.h>

#include <iostream>
#include <map>

namespace varda::test {
namespace {

class LivingControllerTest : public testing::Test {
protected:
    PacketTable table;
    Controller controller;
    LivingController living{table, controller};
    const Bytes request = bytesOfText("FF 00 23 03 64 02 01 50 F3 ");
};

TEST_F(LivingControllerTest, OffItAnswersFromPreparedPairsAlone) {
    table.addPair("0102", "AABB");
    EXPECT_EQ(living.answerTo(Bytes{1, 2})->bytes, (Bytes{0xAA, 0xBB}));
    EXPECT_FALSE(living.answerTo(request));
}

TEST_F(LivingControllerTest, OnItAnswersTheRestFromMemory) {
    controller.setWord(612, 0x1234);
    living.switchOn(true);
    const auto answer = living.answerTo(request);
    ASSERT_TRUE(answer);
    EXPECT_FALSE(answer->pair);
    EXPECT_EQ(hexGroups(answer->bytes).substr(0, 18), "00 FF A3 02 34 12 ");
    table.addPair(hexRun(request), "AABB");
    EXPECT_EQ(living.answerTo(request)->pair, 0U) << "a prepared pair comes first";
    EXPECT_FALSE(living.answerTo(Bytes{1, 2, 3})) << "what is no request stays unknown";
}

TEST_F(LivingControllerTest, MakesAPairOfARequestAndLeavesTheMemoryAsItIs) {
    controller.setWord(612, 0x1234);
    const ControllerMemory before = controller.memory();
    const auto pair = pairFromMemory(request, before);
    ASSERT_TRUE(pair);
    EXPECT_EQ(pair->request, "FF0023036402" + hexRun(request).substr(12));
    EXPECT_EQ(pair->answer.substr(0, 12), "00FFA3023412");
    const Bytes write = finished({0xFF, 0x00, 0x24, 0x04, 0x64, 0x02, 0x05, 0x00}, {}, {}).wire;
    EXPECT_TRUE(pairFromMemory(write, before));
    EXPECT_EQ(controller.memory(), before);
    EXPECT_FALSE(pairFromMemory(Bytes{1, 2, 3}, before));
}

/// A second controller, which knows nothing of the first: words in a map, bits by division.
class Model {
public:
    unsigned word(int address) const {
        const auto found = words_.find(address);
        return found == words_.end() ? 0 : found->second;
    }
    void setWord(int address, unsigned value) { words_[address] = value; }
    bool bit(int word, int bit) const { return this->word(word) / power(bit) % 2 == 1; }
    void setBit(int word, int bit, bool isOn) {
        if (this->bit(word, bit) != isOn) {
            words_[word] = isOn ? this->word(word) + power(bit) : this->word(word) - power(bit);
        }
    }
    /// After each answered request.
    void move() {
        setWord(3072, (word(3072) + 1) % 65536);
        setBit(448, 0, !bit(448, 0));
    }

private:
    static unsigned power(int bit) { return bit == 0 ? 1 : 2 * power(bit - 1); }

    std::map<int, unsigned> words_;
};

/// A drawn request of a master page and the answer that the model gives.
struct Question {
    Octets request;
    Octets answer;
};

class Questions {
public:
    explicit Questions(unsigned seed) : draws_(seed) {}

    Question draw() {
        const int code = 0x21 + draws_.below(6);
        const auto drawnStation = [this] {
            const auto value = static_cast<unsigned>(draws_.below(256));
            return Station{"", value, printed("%X", value)};
        };
        destination_ = drawnStation();
        source_ = drawnStation();
        Question question = code < 0x25 ? single(static_cast<unsigned>(code)) : mixed(code == 0x26);
        const unsigned check = frameCheck(question.answer, question.answer.size());
        question.answer.push_back(low(check));
        question.answer.push_back(high(check));
        model_.move();
        return question;
    }

private:
    Octets answerHeader(unsigned code, std::size_t length) const {
        return {low(source_.value), low(destination_.value), low(code + 0x80),
                low(static_cast<unsigned>(length))};
    }
    static void append(Octets& bytes, const Octets& more) {
        bytes.insert(bytes.end(), more.begin(), more.end());
    }

    Question single(unsigned code) {
        const bool isWord = code >= 0x23;
        const bool writes = code % 2 == 0;
        const int count = 1 + draws_.below(writes ? (isWord ? 126 : 253) : (isWord ? 128 : 256));
        const int last = isWord ? 3584 - count : 512 * 16 - count;
        const int first = draws_.below(last + 1);
        Octets data;
        Octets values;
        for (int address = first; address < first + count; ++address) {
            append(writes ? data : values, isWord ? wordOf(address, writes) : bitOf(address, writes));
        }
        Octets answer = answerHeader(code, writes ? 1 : values.size());
        append(answer, writes ? Octets{0} : values);
        const Octets rest = writes ? data : Octets{low(static_cast<unsigned>(count % 256))};
        return {singleRequest(destination_, source_, code, static_cast<unsigned>(first), rest).wire, answer};
    }

    /// The bytes of a value: the new one where it is written.
    Octets wordOf(int address, bool writes) {
        if (writes) {
            model_.setWord(address, static_cast<unsigned>(draws_.below(65536)));
        }
        return {low(model_.word(address)), high(model_.word(address))};
    }
    Octets bitOf(int address, bool writes) {
        if (writes) {
            model_.setBit(address / 16, address % 16, draws_.oneIn(2));
        }
        return {static_cast<std::uint8_t>(model_.bit(address / 16, address % 16) ? 0xFF : 0)};
    }

    Question mixed(bool writes) {
        std::vector<DrawnPoint> points;
        Octets values;
        for (int left = 1 + draws_.below(20); left > 0; --left) {
            DrawnPoint point;
            point.word = draws_.oneIn(2);
            point.kind = point.word ? draws_.pick({"R", "L", "M", "K", "F", "W"})
                                    : draws_.pick({"R", "L", "M", "K", "F"});
            point.number = draws_.below(16);
            point.bit = draws_.below(16);
            point.value = writes ? static_cast<unsigned>(draws_.below(point.word ? 65536 : 2)) : 1;
            if (writes && point.word) {
                model_.setWord(point.firstAddress(), point.value);
            } else if (writes) {
                model_.setBit(point.firstAddress(), point.bit, point.value != 0);
            } else if (point.word) {
                append(values, wordOf(point.firstAddress(), false));
            } else {
                append(values, bitOf(point.firstAddress() * 16 + point.bit, false));
            }
            points.push_back(point);
        }
        Octets answer = answerHeader(writes ? 0x26 : 0x25, writes ? 1 : values.size());
        append(answer, writes ? Octets{0} : values);
        return {(writes ? writer_ : reader_).encode(points, destination_, source_).wire, answer};
    }

    Draws draws_;
    Model model_;
    MixedEncoder reader_{false};
    MixedEncoder writer_{true};
    Station destination_;
    Station source_;
};

TEST_F(LivingControllerTest, TenThousandRandomRequestsAreAnsweredAsAnotherModelWould) {
    constexpr unsigned seed = 16'023;
    std::cout << "seed " << seed << '\n';
    Questions questions(seed);
    living.switchOn(true);
    for (int round = 0; round < 10'000; ++round) {
        const Question question = questions.draw();
        const auto answer = living.answerTo(question.request);
        ASSERT_TRUE(answer) << hexGroups(question.request) << "in round " << round;
        ASSERT_EQ(hexGroups(answer->bytes), hexGroups(question.answer))
            << hexGroups(question.request) << "in round " << round;
    }
}

/// Over a link, with what the trace says of it.
class LivingLinkTest : public TracedLinkTest {
protected:
    LivingLinkTest() {
        living.switchOn(true);
        link.setRoles({.answerTo = [this](auto request) { return living.answerTo(request); }});
        link.enterMode(Mode::Simulation);
    }

    Controller controller;
    LivingController living{table, controller};
};

TEST_F(LivingLinkTest, TheTraceSaysThatTheMemoryAnswered) {
    hear("FF 00 23 03 64 02 04 90 F0 ");
    ASSERT_EQ(lines(), 3U);
    EXPECT_EQ(verdict(1), "Answered by the controller's memory.");
    EXPECT_EQ(verdict(2), "The answer of the controller's memory.");
    EXPECT_FALSE(isWrong(1));
    EXPECT_EQ(wire.written().size(), 1U);
    EXPECT_FALSE(link.state().InReceive);
}

TEST_F(LivingLinkTest, WhatTheMemoryDoesNotAnswerStaysUnknown) {
    hear("01 02 03 ");
    EXPECT_EQ(verdict(1), "No prepared request matches. None is prepared. It is no frame of this protocol.");
    EXPECT_TRUE(link.state().InReceive);
}

} // namespace
} // namespace varda::test
