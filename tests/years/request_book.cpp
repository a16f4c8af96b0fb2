#include "years/request_book.h"

#include "core/protocol/point_list.h"
#include "core/protocol/registers.h"
#include "core/protocol/single_requests.h"

#include <algorithm>
#include <cstddef>

namespace varda::years {
namespace {

constexpr int smallCount = 4;

bool isWord(Mode mode) { return mode == Mode::WordRead || mode == Mode::WordWrite; }
bool isMixed(Mode mode) { return mode == Mode::MixedRead || mode == Mode::MixedWrite; }
Access accessOf(Mode mode) { return isWord(mode) ? Access::Word : Access::Bit; }

test::Station drawStation(Random& random) {
    const auto value = static_cast<unsigned>(random.between(16, 255)); // below, a page shows one digit
    return {std::to_string(value), value, test::printed("%02X", value)};
}

/// Short ones mostly, as they are typed; the longest too.
int drawCount(Random& random, int most, bool isSmall) {
    return random.octaves(1, isSmall ? smallCount : most);
}

const RegisterKind& drawKind(Random& random, bool isForWords) {
    for (;;) {
        const auto kinds = registerKinds();
        const RegisterKind& kind =
            kinds[static_cast<std::size_t>(random.below(static_cast<int>(kinds.size())))];
        if (isForWords || kind.bitAccess) {
            return kind;
        }
    }
}

void drawSingle(Random& random, DrawnRequest& request, bool isSmall) {
    const RegisterKind& kind = drawKind(random, isWord(request.mode));
    request.kind = kind.name;
    request.number = random.below(kind.highestListed + 1);
    request.bit = random.below(16);
    switch (request.mode) {
    case Mode::BitRead:
        request.count = drawCount(random, bitReadLimit, isSmall);
        break;
    case Mode::WordRead:
        request.count = drawCount(random, wordReadLimit, isSmall);
        break;
    default:
        request.values.resize(static_cast<std::size_t>(
            drawCount(random, isWord(request.mode) ? wordWriteLimit : bitWriteLimit, isSmall)));
        std::ranges::generate(request.values, [&] { return random.below(65'536); });
    }
    if (isWord(request.mode) && kind.last - kind.base - request.number < wordReadLimit) {
        request.number = 0; // else it might end outside the memory, and no controller would answer
    }
}

std::string lineOf(const test::DrawnPoint& point, bool writes) {
    const std::string number = std::to_string(point.number);
    const std::string value = !writes      ? std::to_string(point.value)
                              : point.word ? test::printed("%04X", point.value)
                                           : (point.value == 0 ? "OFF" : "ON");
    return point.word ? wordPointLine(point.kind, number, value)
                      : bitPointLine(point.kind, number, std::to_string(point.bit), value);
}

void drawMixed(Random& random, DrawnRequest& request, bool isSmall) {
    const std::vector<std::string> kinds = {"R", "L", "M", "K", "F"};
    const bool writes = request.mode == Mode::MixedWrite;
    for (int left = random.octaves(1, isSmall ? 2 : 32); left > 0; --left) {
        test::DrawnPoint point;
        point.word = random.oneIn(2);
        point.kind = random.pick(kinds);
        point.number = random.below(16);
        point.bit = random.below(16);
        point.value = static_cast<unsigned>(!writes ? 1 : random.below(point.word ? 65'536 : 2));
        request.lines.push_back(lineOf(point, writes));
        request.points.push_back(std::move(point));
    }
}

} // namespace

DrawnRequest drawRequest(Random& random, Mode mode, bool isSmall) {
    DrawnRequest request;
    request.mode = mode;
    request.destination = drawStation(random);
    request.source = drawStation(random);
    if (isMixed(mode)) {
        drawMixed(random, request, isSmall);
    } else {
        drawSingle(random, request, isSmall);
    }
    return request;
}

void FrameMaker::enter(const DrawnRequest& request) {
    request_ = request;
    if (!isMixed(request.mode)) {
        setStation(image(), offset::destination, request.destination.typed);
        setStation(image(), offset::source, request.source.typed);
        const int word = registerAddress(accessOf(request.mode), request.kind, request.number);
        image().setLowHigh(offset::address,
                           isWord(request.mode) ? wordAddressText(word) : bitAddressText(word, request.bit));
        findRoute(request.mode)->repeatsOnlyWhenAnswered ? enterWrite() : enterRead();
    }
    const test::Encoded frame = encoded();
    expected_ = {frame.wire, expectedAnswerLength()};
    expectedText_ = frame.shown;
}

void FrameMaker::enterRead() { setReadCount(images_, request_.count); }

void FrameMaker::enterWrite() {
    setWriteCount(images_, accessOf(request_.mode), static_cast<int>(request_.values.size()));
    for (std::size_t index = 0; index < request_.values.size(); ++index) {
        if (isWord(request_.mode)) {
            setWriteWord(images_, index, request_.values[index]);
        } else {
            setWriteBit(images_, index, request_.values[index] % 2 == 1);
        }
    }
}

const MadeFrame& FrameMaker::make() {
    const Access access = accessOf(request_.mode);
    switch (request_.mode) {
    case Mode::BitRead:
    case Mode::WordRead:
        MakeReadFormat(images_, access);
        made_ = {readWire(images_), DisplayRString(images_),
                 readAnswerLength(access, images_.read.byte(offset::count))};
        break;
    case Mode::BitWrite:
    case Mode::WordWrite:
        MakeWriteFormat(images_, access, static_cast<int>(request_.values.size()));
        made_ = {writeWire(images_), DisplayWString(images_), writeAnswerLength};
        break;
    default:
        makeMixed();
    }
    compare();
    return made_;
}

void FrameMaker::makeMixed() {
    const StationTexts stations = {request_.destination.typed, request_.source.typed};
    if (request_.mode == Mode::MixedRead) {
        MakeMRDataFormat(images_, request_.lines);
        MakeMReadFormat(images_, stations, request_.lines);
        made_ = {mixedWire(images_, command::mixedRead), DisplayMRString(images_),
                 GetMRAnswerLength(request_.lines) + static_cast<int>(frame_size::envelope)};
    } else {
        MakeMWDataFormat(images_, request_.lines);
        MakeMWriteFormat(images_, stations, request_.lines);
        made_ = {mixedWire(images_, command::mixedWrite), DisplayMWString(images_), writeAnswerLength};
    }
}

void FrameMaker::compare() {
    findings_.require(
        made_.text == expectedText_ && made_.bytes == expected_.bytes &&
            made_.answerLength == expected_.answerLength,
        [this] { return "the frame shown is another one: " + made_.text + "for " + expectedText_; });
}

test::Encoded FrameMaker::encoded() {
    if (isMixed(request_.mode)) {
        auto& encoder = request_.mode == Mode::MixedRead ? mixedReads_ : mixedWrites_;
        return encoder.encode(request_.points, request_.destination, request_.source);
    }
    const bool word = isWord(request_.mode);
    const int first = test::firstWord(request_.kind, word) + request_.number;
    const unsigned field = word ? static_cast<unsigned>(first) : test::bitField(first, request_.bit);
    test::Octets rest;
    if (request_.values.empty()) {
        rest = {test::low(static_cast<unsigned>(request_.count))};
    }
    for (const int value : request_.values) {
        rest.push_back(word ? test::low(static_cast<unsigned>(value)) : value % 2 == 1 ? 0xFF : 0x00);
        if (word) {
            rest.push_back(test::high(static_cast<unsigned>(value)));
        }
    }
    return test::singleRequest(request_.destination, request_.source, static_cast<unsigned>(request_.mode),
                               field, rest);
}

int FrameMaker::expectedAnswerLength() const {
    constexpr int envelope = 6;
    if (findRoute(request_.mode)->repeatsOnlyWhenAnswered) {
        return envelope + 1;
    }
    if (isMixed(request_.mode)) {
        int sum = 0;
        for (const test::DrawnPoint& point : request_.points) {
            sum += point.word ? 2 : 1;
        }
        return envelope + sum;
    }
    return envelope + request_.count * (isWord(request_.mode) ? 2 : 1);
}

} // namespace varda::years
