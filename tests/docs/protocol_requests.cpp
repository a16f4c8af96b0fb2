#include "docs/protocol_requests.h"

#include "core/protocol/hex_text.h"
#include "core/protocol/point_list.h"
#include "core/protocol/single_requests.h"

#include <algorithm>
#include <regex>
#include <stdexcept>

namespace varda::test {
namespace {

/// The parts that a pattern finds in a whole text.
std::smatch parts(const std::string& text, const char* pattern) {
    std::smatch found;
    if (!std::regex_match(text, found, std::regex(pattern))) {
        throw std::runtime_error("cannot be understood: " + text);
    }
    return found;
}

/// The words of "A B" or of "3 times A B", written out.
Texts writtenOut(const std::string& text) {
    Texts words = split(text, ' ');
    if (words.size() < 3 || words[1] != "times") {
        return words;
    }
    Texts repeated;
    for (int times = std::stoi(words[0]); times > 0; --times) {
        repeated.insert(repeated.end(), words.begin() + 2, words.end());
    }
    return repeated;
}

Run parseRun(const std::string& text) {
    const std::smatch found = parts(text, R"((bit|word)s ([A-Z]+ [0-9.]+) (?:count (\d+)|= (.+)))");
    return {found[1] == "bit" ? Access::Bit : Access::Word, parseRegister(found[2]),
            found[3].matched ? std::stoi(found[3]) : 0, found[4].matched ? writtenOut(found[4]) : Texts()};
}

bool isValue(Access access, const std::string& value) {
    return access == Access::Bit ? value == "ON" || value == "OFF" : value.size() == 4;
}

/// Whether a run names its register, and its count or its values, as the request calls for.
bool isWhole(const Run& run, bool writes) {
    const bool namesBit = !run.first.bit.empty();
    const bool isCounted = run.values.empty() && run.count >= 1 && run.count <= bitReadLimit;
    const bool hasValues =
        !run.values.empty() && std::ranges::all_of(run.values, [&run](const std::string& value) {
            return isValue(run.access, value);
        });
    return namesBit == (run.access == Access::Bit) && (writes ? hasValues : isCounted);
}

void check(const NamedRequest& request, const std::string& sentence) {
    const bool hasFittingRuns = request.mixed || request.runs.size() == 1;
    if (!hasFittingRuns || !std::ranges::all_of(request.runs, [&request](const Run& run) {
            return isWhole(run, request.writes);
        })) {
        throw std::runtime_error("does not fit together: " + sentence);
    }
}

void setHeader(FrameImage& image, const NamedRequest& request) {
    setStation(image, offset::destination, request.stations.destination);
    setStation(image, offset::source, request.stations.source);
    const NamedRegister& first = request.runs.front().first;
    image.setLowHigh(offset::address, first.bit.empty() ? wordAddressText(first.word())
                                                        : bitAddressText(first.word(), std::stoi(first.bit)));
}

Bytes singleRead(const NamedRequest& request, FrameImages& images) {
    setHeader(images.read, request);
    setReadCount(images, request.runs.front().count);
    MakeReadFormat(images, request.runs.front().access);
    return readWire(images);
}

Bytes singleWrite(const NamedRequest& request, FrameImages& images) {
    const auto& [access, first, count, values] = request.runs.front();
    setHeader(images.write, request);
    setWriteCount(images, access, static_cast<int>(values.size()));
    for (std::size_t index = 0; index < values.size(); ++index) {
        if (access == Access::Bit) {
            setWriteBit(images, index, values[index] == "ON");
        } else {
            setWriteWord(images, index, fromHex(values[index]));
        }
    }
    MakeWriteFormat(images, access, static_cast<int>(values.size()));
    return writeWire(images);
}

std::string pointLine(const Run& run) {
    const auto& [kind, number, bit] = run.first;
    if (run.values.size() > 1) {
        throw std::runtime_error("a mixed write takes one value for a point: " + kind + number);
    }
    const std::string value = run.values.empty() ? std::to_string(run.count) : run.values.front();
    return run.access == Access::Bit ? bitPointLine(kind, number, bit, value)
                                     : wordPointLine(kind, number, value);
}

Texts pointLines(const NamedRequest& request) {
    Texts lines;
    for (const Run& run : request.runs) {
        lines.push_back(pointLine(run));
    }
    return lines;
}

Bytes mixed(const NamedRequest& request, FrameImages& images) {
    const Texts lines = pointLines(request);
    if (request.writes) {
        MakeMWDataFormat(images, lines);
        MakeMWriteFormat(images, request.stations, lines);
        return mixedWire(images, command::mixedWrite);
    }
    MakeMRDataFormat(images, lines);
    MakeMReadFormat(images, request.stations, lines);
    return mixedWire(images, command::mixedRead);
}

} // namespace

int NamedRegister::word() const {
    return registerAddress(bit.empty() ? Access::Word : Access::Bit, kind, std::stoi(number));
}

NamedRegister parseRegister(const std::string& text) {
    const std::smatch found = parts(text, R"(([A-Z]+) (\d+)(?:\.(\d+))?)");
    return {found[1], found[2], found[3]};
}

std::string NamedRequest::name() const {
    const char* const points = runs.front().access == Access::Bit ? "bits" : "words";
    return std::string(writes ? "write " : "read ") + (mixed ? "mixed" : points);
}

NamedRequest parseRequest(const std::string& sentence) {
    const std::smatch found = parts(sentence, R"((read|write) (mixed )?(.+), stations (\d+) (\d+))");
    NamedRequest request{found[1] == "write", found[2].matched, {}, {found[4], found[5]}};
    for (const std::string& run : split(found[3].str(), ',')) {
        request.runs.push_back(parseRun(run));
    }
    check(request, sentence);
    return request;
}

Bytes wire(const NamedRequest& request, FrameImages& images) {
    if (request.mixed) {
        return mixed(request, images);
    }
    return request.writes ? singleWrite(request, images) : singleRead(request, images);
}

Bytes wire(const NamedRequest& request) {
    FrameImages images;
    return wire(request, images);
}

int awaitedAnswer(const NamedRequest& request) {
    if (request.writes) {
        return writeAnswerLength;
    }
    if (request.mixed) {
        return GetMRAnswerLength(pointLines(request)) + 6;
    }
    return readAnswerLength(request.runs.front().access, wire(request)[offset::count]);
}

Bytes parseBytes(const std::string& text) {
    Bytes bytes;
    for (const std::string& part : split(text, ',')) {
        for (const std::string& group : writtenOut(part)) {
            if (group.size() != 2) {
                throw std::runtime_error("no byte of two digits: " + group);
            }
            bytes.push_back(byteFromHex(group));
        }
    }
    return bytes;
}

} // namespace varda::test
