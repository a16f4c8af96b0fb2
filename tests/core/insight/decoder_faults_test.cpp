#include "core/insight/decoder.h"

#include "core/insight/drawn_frames.h"
#include "core/insight/field_words.h"
#include "core/protocol/frame_text.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

constexpr unsigned seed = 4711;

/// Two exchanges of every kind, whose frames are damaged one way after another.
std::vector<DrawnExchange> exchanges() {
    FrameDraws draws(seed);
    std::vector<DrawnExchange> all;
    for (int round = 0; round < 2 * FrameDraws::kinds; ++round) {
        all.push_back(draws.exchange(round % FrameDraws::kinds));
    }
    return all;
}

/// Every field of a cut frame is one of the whole frame; the last one may have less of it.
void expectBeginning(const DecodedFrame& cut, const DecodedFrame& whole) {
    ASSERT_LE(cut.fields.size(), whole.fields.size());
    for (std::size_t index = 0; index + 1 < cut.fields.size(); ++index) {
        ASSERT_EQ(cut.fields[index], whole.fields[index]);
    }
    const Field& last = cut.fields.back();
    const Field& before = whole.fields[cut.fields.size() - 1];
    ASSERT_EQ(last.role, before.role);
    ASSERT_EQ(last.place, before.place);
    ASSERT_LE(last.length, before.length);
}

void expectCutAnywhere(const Bytes& frame, const Bytes& request) {
    const DecodedFrame whole = decode(frame, request);
    for (std::size_t size = 1; size < whole.end; ++size) {
        const DecodedFrame cut = decode(std::span(frame).first(size), request);
        ASSERT_TRUE(cut.has(Fault::Cut)) << size << " of " << frame.size();
        ASSERT_TRUE(size <= offset::length || cut.missing == whole.end - size) << size;
        ASSERT_FALSE(cut.has(Fault::WrongCheck));
        expectCovered(cut, size);
        expectBeginning(cut, whole);
    }
}

TEST(DecoderFaults, EveryKindCutAtEveryLengthDecodesAsFarAsItGoes) {
    for (const DrawnExchange& drawn : exchanges()) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ": " + kindInWords(drawn.asked.kind));
        expectCutAnywhere(drawn.request, {});
        expectCutAnywhere(drawn.answer, drawn.request);
        expectCutAnywhere(drawn.answer, {});
    }
}

TEST(DecoderFaults, NothingIsAFrameThatIsCut) {
    const DecodedFrame nothing = decode({});
    EXPECT_TRUE(nothing.has(Fault::Cut));
    EXPECT_TRUE(nothing.fields.empty());
    EXPECT_EQ(nothing.missing, 6U);
    EXPECT_TRUE(decodeBurst({}).empty());
}

/// A bit of the frame itself, not of the byte that follows it, never goes unnoticed; other fields keep what
/// they say where the frame's shape does not hang on the bit.
void expectFlipsNoticed(const Bytes& frame, const Bytes& request) {
    const DecodedFrame whole = decode(frame, request);
    for (std::size_t bit = 0; bit < 8 * whole.end; ++bit) {
        Bytes damaged = frame;
        damaged[bit / 8] = static_cast<std::uint8_t>(damaged[bit / 8] ^ 1U << bit % 8);
        const DecodedFrame decoded = decode(damaged, request);
        ASSERT_FALSE(decoded.isSound()) << "bit " << bit;
        expectCovered(decoded, damaged.size());
        const bool isShape = bit / 8 == offset::command || bit / 8 == offset::length;
        ASSERT_TRUE(isShape || decoded.has(Fault::WrongCheck)) << "bit " << bit;
        ASSERT_TRUE(bit / 8 == offset::command || decoded.kind == whole.kind);
    }
}

TEST(DecoderFaults, EverySingleBitFlippedIsNoticed) {
    for (const DrawnExchange& drawn : exchanges()) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ": " + kindInWords(drawn.asked.kind));
        expectFlipsNoticed(drawn.request, {});
        expectFlipsNoticed(drawn.answer, drawn.request);
    }
}

TEST(DecoderFaults, AHundredThousandRandomBurstsDecode) {
    Draws draws(seed);
    const auto drawBytes = [&draws](int most) {
        Bytes bytes(static_cast<std::size_t>(draws.below(most)));
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(draws.oneIn(3) ? (draws.oneIn(2) ? 0x20 : 0xA0) + draws.below(8)
                                                            : draws.below(256));
        }
        return bytes;
    };
    for (int round = 0; round < 100'000; ++round) {
        const Bytes burst = drawBytes(draws.oneIn(20) ? 600 : 24);
        const Bytes request = drawBytes(16);
        const DecodedFrame frame = decode(burst, request);
        ASSERT_NO_FATAL_FAILURE(expectCovered(frame, burst.size())) << "seed " << seed << ", round " << round;
        const auto frames = decodeBurst(burst, request);
        ASSERT_EQ(frames.empty(), burst.empty());
        ASSERT_EQ(flawOfCoverage(frames, burst.size()), "") << "seed " << seed << ", round " << round;
    }
}

TEST(DecoderFaults, EachFaultIsASentence) {
    const auto sentences = [](const char* text) {
        const DecodedFrame frame = decode(bytesOfText(text));
        std::vector<std::string> all;
        for (const Fault fault : frame.faults) {
            all.push_back(faultInWords(frame, fault));
        }
        return all;
    };
    using Sentences = std::vector<std::string>;
    EXPECT_EQ(sentences("FF FF 23 03 39 02 "), Sentences{"The frame is cut: 3 bytes are missing."});
    EXPECT_EQ(sentences("FF FF 21 03 20 00 04 BC 4B "),
              Sentences{"The check is 4BBCh; of the bytes before it, it is 4ABCh."});
    EXPECT_EQ(sentences("FF FF 23 04 00 02 02 00 00 "),
              (Sentences{"LEN says 4, the body has 3 bytes.",
                         "The check is 0000h; of the bytes before it, it is 5644h."}));
    EXPECT_EQ(sentences("FF FF A4 02 00 00 00 00 ").at(0), "The body has 2 bytes; 1 belong to this kind.");
    EXPECT_EQ(sentences("FF FF A3 03 00 00 00 00 00 ").at(0),
              "The body has 3 bytes, which is no whole number of values.");
    EXPECT_EQ(sentences("FF FF A4 01 00 40 73 12 34 "), Sentences{"2 bytes more than the frame has."});
    EXPECT_EQ(sentences("FF FF 77 00 00 00 ").at(1), "77h is no command of this protocol.");
}

} // namespace
} // namespace varda::test
