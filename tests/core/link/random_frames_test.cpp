#include "core/protocol/mixed_requests.h"
#include "core/protocol/point_list.h"
#include "core/protocol/single_requests.h"

#include "core/protocol/random_draws.h"
#include "support/raises.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace varda {
namespace {

using test::DrawnPoint;
using test::Draws;
using test::Encoded;
using test::Octets;
using test::Station;

constexpr int rounds = 10000;

/// A list of points and the lines that a page would hold for them, empty lines between.
struct DrawnList {
    std::vector<DrawnPoint> points;
    std::vector<std::string> lines;
};

/// How often each outcome came, so that a comparison that never meets an error shows.
struct Outcomes {
    int sent = 0;
    int emptied = 0; ///< sent with an empty body although the list has points
    int overflows = 0;
    int mismatches = 0;
};

const std::vector<std::string> oneLetterKinds = {"R", "L", "M", "K", "F", "W"};
const std::vector<std::string> twoLetterKinds = {"TC", "SV", "PV", "SR"};

DrawnPoint drawPoint(Draws& draws, bool mayFail) {
    DrawnPoint point;
    point.word = draws.oneIn(2);
    point.kind = draws.pick(mayFail && draws.oneIn(60) ? twoLetterKinds : oneLetterKinds);
    point.number = draws.below(point.kind == "W" ? 2048 : 128);
    if (mayFail && draws.oneIn(60)) {
        point.number = 32000 + draws.below(768);
    } else if (draws.oneIn(20)) {
        point.number = draws.below(30000);
    }
    point.bit = draws.below(draws.oneIn(10) ? 300 : 16);
    return point;
}

std::string addressPart(Draws& draws, const DrawnPoint& point) {
    std::string digits = std::to_string(point.number);
    if (digits.size() < 4 && !draws.oneIn(5)) {
        digits.insert(0, 4 - digits.size(), '0');
    }
    return point.word ? "WORD\t" + point.kind + digits
                      : "BIT\t" + point.kind + digits + "." + std::to_string(point.bit);
}

void drawEmptyLine(Draws& draws, DrawnList& list) {
    if (draws.oneIn(15)) {
        list.lines.emplace_back();
    }
}

DrawnList drawReadList(Draws& draws) {
    DrawnList list;
    const int count = draws.below(draws.oneIn(4) ? 140 : 8);
    const int longest = draws.oneIn(4) ? 256 : (count < 8 ? 24 : 2);
    for (int i = 0; i < count; ++i) {
        DrawnPoint point = drawPoint(draws, true);
        point.value = static_cast<unsigned>(1 + draws.below(longest));
        drawEmptyLine(draws, list);
        list.lines.push_back(addressPart(draws, point) + "\t" + std::to_string(point.value));
        list.points.push_back(std::move(point));
    }
    return list;
}

DrawnList drawWriteList(Draws& draws) {
    DrawnList list;
    const int count = draws.oneIn(2) ? 55 + draws.below(40) : draws.below(55);
    for (int i = 0; i < count; ++i) {
        DrawnPoint point = drawPoint(draws, count < 30);
        point.value = point.word ? static_cast<unsigned>(draws.below(65536)) : (draws.oneIn(2) ? 1U : 0U);
        const std::string value =
            point.word ? test::typedHex(draws, point.value) : (point.value == 0 ? "OFF" : "ON");
        drawEmptyLine(draws, list);
        list.lines.push_back(addressPart(draws, point) + "\t" + value);
        list.points.push_back(std::move(point));
    }
    return list;
}

void count(Outcomes& outcomes, const Encoded& encoded, const DrawnList& list) {
    outcomes.overflows += encoded.error == 6 ? 1 : 0;
    outcomes.mismatches += encoded.error == 13 ? 1 : 0;
    outcomes.sent += encoded.error == 0 ? 1 : 0;
    outcomes.emptied += encoded.wire.size() == 7 && !list.points.empty() ? 1 : 0;
}

/// Bytes of the answer to a mixed read, or the error that adding them up ends in.
std::pair<int, int> answerSum(const DrawnList& list) {
    unsigned sum = 0;
    for (const DrawnPoint& point : list.points) {
        sum += point.word ? 2 * point.value : point.value;
    }
    return sum > 255 ? std::pair(0, 6) : std::pair(static_cast<int>(sum), 0);
}

Encoded readWithCore(FrameImages& images, const DrawnList& list, const StationTexts& stations) {
    Encoded encoded;
    encoded.error = test::numberRaisedBy([&] {
        MakeMRDataFormat(images, list.lines);
        MakeMReadFormat(images, stations, list.lines);
        encoded.shown = DisplayMRString(images);
        encoded.wire = mixedWire(images, command::mixedRead);
    });
    return encoded;
}

Encoded writeWithCore(FrameImages& images, const DrawnList& list, const StationTexts& stations) {
    Encoded encoded;
    encoded.error = test::numberRaisedBy([&] {
        MakeMWDataFormat(images, list.lines);
        MakeMWriteFormat(images, stations, list.lines);
        encoded.shown = DisplayMWString(images);
        encoded.wire = mixedWire(images, command::mixedWrite);
    });
    return encoded;
}

void expectSame(const Encoded& core, const Encoded& independent) {
    ASSERT_EQ(core.error, independent.error);
    ASSERT_EQ(core.wire, independent.wire);
    ASSERT_EQ(core.shown, independent.shown);
}

/// Sends lists one after another from one image and one encoder, so that what an earlier frame left behind is
/// compared too.
template <typename DrawList, typename EncodeWithCore>
Outcomes compareMixed(unsigned seed, bool writes, DrawList drawList, EncodeWithCore encodeWithCore) {
    Draws draws(seed);
    FrameImages images;
    test::MixedEncoder encoder(writes);
    Outcomes outcomes;
    for (int round = 0; round < rounds && !testing::Test::HasFatalFailure(); ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", list " + std::to_string(round));
        const DrawnList list = drawList(draws);
        const Station destination = draws.station();
        const Station source = draws.station();
        const Encoded independent = encoder.encode(list.points, destination, source);
        expectSame(encodeWithCore(images, list, StationTexts{destination.typed, source.typed}), independent);
        count(outcomes, independent, list);
    }
    return outcomes;
}

TEST(RandomFrames, MixedReadsEqualThoseOfAnIndependentEncoder) {
    constexpr unsigned seed = 20250;
    RecordProperty("seed", static_cast<int>(seed));
    const Outcomes outcomes = compareMixed(seed, false, drawReadList, readWithCore);
    EXPECT_GT(outcomes.sent, rounds / 4);
    EXPECT_GT(outcomes.overflows, rounds / 20);
    EXPECT_GT(outcomes.mismatches, rounds / 100);
}

TEST(RandomFrames, MixedWritesEqualThoseOfAnIndependentEncoder) {
    constexpr unsigned seed = 20260;
    RecordProperty("seed", static_cast<int>(seed));
    const Outcomes outcomes = compareMixed(seed, true, drawWriteList, writeWithCore);
    EXPECT_GT(outcomes.sent, rounds / 4);
    EXPECT_GT(outcomes.emptied, rounds / 100);
    EXPECT_GT(outcomes.overflows, rounds / 20);
    EXPECT_GT(outcomes.mismatches, rounds / 100);
}

TEST(RandomFrames, MixedAnswerLengthsEqualTheSumOfThePoints) {
    constexpr unsigned seed = 20270;
    RecordProperty("seed", static_cast<int>(seed));
    Draws draws(seed);
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", list " + std::to_string(round));
        const DrawnList list = drawReadList(draws);
        int length = 0;
        const int error = test::numberRaisedBy([&] { length = GetMRAnswerLength(list.lines); });
        ASSERT_EQ(std::pair(length, error), answerSum(list));
    }
}

/// A register of a single request as drawn, with its address field.
struct DrawnRegister {
    std::string kind;
    int number;
    int bit;
    unsigned field;
};

DrawnRegister drawRegister(Draws& draws, bool word) {
    DrawnRegister drawn = {draws.pick(oneLetterKinds), 0, draws.below(16), 0};
    if (draws.oneIn(3)) {
        drawn.kind = draws.pick(twoLetterKinds);
    }
    drawn.number = draws.below(draws.oneIn(20) ? 20000 : 512);
    const int first = test::firstWord(drawn.kind, word) + drawn.number;
    drawn.field = word ? static_cast<unsigned>(first) : test::bitField(first, drawn.bit);
    return drawn;
}

void setAddress(FrameImage& image, Access access, const DrawnRegister& drawn) {
    const int word = registerAddress(access, drawn.kind, drawn.number);
    image.setLowHigh(offset::address,
                     access == Access::Word ? wordAddressText(word) : bitAddressText(word, drawn.bit));
}

void setStations(FrameImage& image, const Station& destination, const Station& source) {
    setStation(image, offset::destination, destination.typed);
    setStation(image, offset::source, source.typed);
}

void compareRead(FrameImages& images, Draws& draws) {
    const bool word = draws.oneIn(2);
    const Access access = word ? Access::Word : Access::Bit;
    const Station destination = draws.station();
    const Station source = draws.station();
    const DrawnRegister drawn = drawRegister(draws, word);
    const int count = draws.below(257);
    setStations(images.read, destination, source);
    setAddress(images.read, access, drawn);
    setReadCount(images, count);
    MakeReadFormat(images, access);
    const Octets countByte = {test::low(static_cast<unsigned>(count))};
    expectSame({0, readWire(images), DisplayRString(images)},
               test::singleRequest(destination, source, word ? 0x23 : 0x21, drawn.field, countByte));
    EXPECT_EQ(readAnswerLength(access, countByte[0]), 6 + (count == 0 ? 256 : count) * (word ? 2 : 1));
}

TEST(RandomFrames, ReadsEqualThoseOfAnIndependentEncoder) {
    constexpr unsigned seed = 20280;
    RecordProperty("seed", static_cast<int>(seed));
    Draws draws(seed);
    FrameImages images;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", read " + std::to_string(round));
        compareRead(images, draws);
    }
}

/// Writes some bits of a grid, in no order and some of them twice, and returns all its data bytes.
Octets drawBits(FrameImages& images, Draws& draws, int count) {
    Octets data(static_cast<std::size_t>(count), 0);
    for (int edit = draws.below(2 * count + 1); edit > 0; --edit) {
        const auto index = static_cast<std::size_t>(draws.below(count));
        const bool on = draws.oneIn(2);
        setWriteBit(images, index, on);
        data[index] = on ? 255 : 0;
    }
    return data;
}

/// The same with words.
Octets drawWords(FrameImages& images, Draws& draws, int count) {
    Octets data(2 * static_cast<std::size_t>(count), 0);
    for (int edit = draws.below(2 * count + 1); edit > 0; --edit) {
        const auto index = static_cast<std::size_t>(draws.below(count));
        const int value = draws.below(65536);
        setWriteWord(images, index, value);
        data[2 * index] = test::low(static_cast<unsigned>(value));
        data[2 * index + 1] = test::high(static_cast<unsigned>(value));
    }
    return data;
}

void compareWrite(FrameImages& images, Draws& draws) {
    const bool word = draws.oneIn(2);
    const Access access = word ? Access::Word : Access::Bit;
    const Station destination = draws.station();
    const Station source = draws.station();
    const DrawnRegister drawn = drawRegister(draws, word);
    const int count = 1 + draws.below(word ? 126 : 253);
    setStations(images.write, destination, source);
    setAddress(images.write, access, drawn);
    setWriteCount(images, access, count);
    const Octets data = word ? drawWords(images, draws, count) : drawBits(images, draws, count);
    MakeWriteFormat(images, access, count);
    expectSame({0, writeWire(images), DisplayWString(images)},
               test::singleRequest(destination, source, word ? 0x24 : 0x22, drawn.field, data));
}

TEST(RandomFrames, WritesEqualThoseOfAnIndependentEncoder) {
    constexpr unsigned seed = 20290;
    RecordProperty("seed", static_cast<int>(seed));
    Draws draws(seed);
    FrameImages images;
    images.write.reset(3, 1023);
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", grid " + std::to_string(round));
        compareWrite(images, draws);
    }
}

} // namespace
} // namespace varda
