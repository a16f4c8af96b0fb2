#include "core/virtual/controller.h"

#include "core/virtual/whole_memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iostream>
#include <random>
#include <span>

namespace varda {
namespace {

/// Random frames, and what can be said of each without asking the controller.
class FrameSource {
public:
    explicit FrameSource(std::uint32_t seed) : random_(seed) {}

    std::size_t below(std::size_t limit) { return random_() % limit; }

    /// A request that has to be answered.
    Bytes validRequest() {
        const auto code = static_cast<std::uint8_t>(0x21 + below(6));
        Bytes frame{anyByte(), anyByte(), code, 0};
        appendBody(frame, code);
        frame[3] = static_cast<std::uint8_t>(frame.size() - 4);
        seal(frame);
        if (code >= 0x25 && below(2) == 0) {
            frame.push_back(anyByte());
        }
        return frame;
    }

    /// A request with bytes changed, added or cut off; every other one carries a fitting CRC all the same.
    Bytes mutatedRequest() {
        Bytes frame = validRequest();
        for (std::size_t change = below(4) + 1; change > 0 && !frame.empty(); --change) {
            frame[below(frame.size())] = anyByte();
        }
        frame.resize(below(4) == 0 ? below(frame.size() + 3) : frame.size());
        if (below(2) == 0 && frame.size() >= 2) {
            frame.resize(frame.size() - 2);
            seal(frame);
        }
        return frame;
    }

    Bytes noise() {
        Bytes frame(below(300));
        for (std::uint8_t& byte : frame) {
            byte = anyByte();
        }
        return frame;
    }

    static std::uint16_t plainCrc(std::span<const std::uint8_t> bytes) {
        unsigned crc = 0xFFFF;
        for (const std::uint8_t byte : bytes) {
            crc ^= byte;
            for (int bit = 0; bit < 8; ++bit) {
                crc = (crc & 1U) != 0 ? (crc >> 1U) ^ 0xA001U : crc >> 1U;
            }
        }
        return static_cast<std::uint16_t>(crc);
    }

private:
    std::uint8_t anyByte() { return static_cast<std::uint8_t>(below(256)); }

    void appendWord(Bytes& frame, std::size_t value) {
        frame.push_back(static_cast<std::uint8_t>(value % 256));
        frame.push_back(static_cast<std::uint8_t>(value / 256));
    }

    void appendAnyBytes(Bytes& frame, std::size_t count) {
        for (; count > 0; --count) {
            frame.push_back(anyByte());
        }
    }

    void appendBody(Bytes& frame, std::uint8_t code) {
        const bool words = code == 0x23 || code == 0x24;
        const std::size_t size = words ? 3584 : 3584 * 16;
        if (code == 0x21 || code == 0x23) {
            const std::size_t count = below(256) + 1;
            appendWord(frame, below(size - count + 1));
            frame.push_back(static_cast<std::uint8_t>(count % 256));
        } else if (code == 0x22 || code == 0x24) {
            const std::size_t count = below(words ? 126 : 253) + 1;
            appendWord(frame, below(size - count + 1));
            appendAnyBytes(frame, words ? 2 * count : count);
        } else {
            appendItems(frame, code == 0x26);
        }
    }

    void appendItems(Bytes& frame, bool withValues) {
        for (std::size_t items = below(64); items > 0; --items) {
            const bool word = below(2) == 0;
            // Bit addresses with 0x40 in the high byte would be taken for words.
            appendWord(frame, word ? 0x4000 + below(3584) : below(0x4000));
            appendAnyBytes(frame, withValues ? (word ? 2 : 1) : 0);
        }
    }

    void seal(Bytes& frame) { appendWord(frame, plainCrc(frame)); }

    std::mt19937 random_;
};

/// What every answered request must have: length, command and CRC that fit.
bool isWellFormed(const Bytes& request) {
    if (request.size() < 6 || request[2] < 0x21 || request[2] > 0x26) {
        return false;
    }
    const std::size_t checked = request[3] + 4U;
    const bool mixed = request[2] >= 0x25;
    const bool lengthFits = request.size() == checked + 2 || (mixed && request.size() == checked + 3);
    return lengthFits &&
           FrameSource::plainCrc({request.data(), checked}) == request[checked] + 256 * request[checked + 1];
}

/// What every answer must have: the stations exchanged, its code, a LEN and a CRC that fit.
bool answersTo(const Bytes& request, const Bytes& answer) {
    if (answer.size() < 6) {
        return false;
    }
    const std::size_t checked = answer.size() - 2;
    return answer[0] == request[1] && answer[1] == request[0] && answer[2] == request[2] + 0x80 &&
           answer[3] == (checked - 4) % 256 &&
           FrameSource::plainCrc({answer.data(), checked}) == answer[checked] + 256 * answer[checked + 1];
}

TEST(Controller, AnswersRandomFramesOnlyWhereTheyAreValid) {
    constexpr std::uint32_t seed = 20'011;
    std::cout << "seed " << seed << '\n';
    FrameSource source(seed);
    Controller controller;
    std::size_t silences = 0;
    for (int round = 0; round < 100'000; ++round) {
        const std::size_t kind = source.below(4);
        const Bytes request = kind == 0   ? source.validRequest()
                              : kind == 1 ? source.noise()
                                          : source.mutatedRequest();
        const auto answer = controller.answer(request);
        silences += answer ? 0 : 1;
        ASSERT_TRUE(answer || kind != 0) << "no answer to a valid request in round " << round;
        ASSERT_TRUE(!answer || isWellFormed(request)) << "an answer to a damaged request in round " << round;
        ASSERT_TRUE(!answer || answersTo(request, *answer)) << "a wrong answer in round " << round;
    }
    EXPECT_GT(silences, 30'000U) << "the frames were too good to show anything";
}

TEST(Controller, RandomRefusedFramesChangeNothing) {
    constexpr std::uint32_t seed = 20'012;
    std::cout << "seed " << seed << '\n';
    FrameSource source(seed);
    Controller controller;
    for (int address = 0; address < Controller::wordCount; ++address) {
        controller.setWord(address, static_cast<std::uint16_t>(source.below(65'536)));
    }
    auto before = wholeMemory(controller);
    for (int round = 0; round < 3'000; ++round) {
        if (controller.answer(source.mutatedRequest())) {
            before = wholeMemory(controller);
        } else {
            ASSERT_EQ(wholeMemory(controller), before) << "in round " << round;
        }
    }
}

} // namespace
} // namespace varda
