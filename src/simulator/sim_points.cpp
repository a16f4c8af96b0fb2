#include "simulator/sim_points.h"

#include "link/frame_image.h"
#include "link/hex_text.h"
#include "platform/conversion.h"
#include "platform/runtime_error.h"
#include "simulator/packet_builders.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

namespace varda {
namespace {

struct PointForm {
    std::string_view lead; ///< tag and the TABs behind it, so that the columns line up
    Access access;
};

/// In the order of SimPoint. A tag is seven characters long.
constexpr std::array<PointForm, 9> pointForms = {{
    {"RD_BIT \t\t", Access::Bit},
    {"RD_WORD\t", Access::Word},
    {"WT_BIT \t\t", Access::Bit},
    {"WT_WORD\t", Access::Word},
    {"MR_BIT \t\t", Access::Bit},
    {"MR_WORD\t", Access::Word},
    {"MW_BIT \t\t", Access::Bit},
    {"MW_WORD\t", Access::Word},
    {"WT_WORD \t", Access::Word}, // kept: a rebuilt word write has a tag of eight characters
}};

struct RequestCode {
    std::string_view digits;
    std::string_view mode;
    Access access; ///< None cannot be taken back
    bool write;
};

constexpr std::array<RequestCode, 6> requestCodes = {{
    {"21", "Bit Read", Access::Bit, false},
    {"22", "Bit Write", Access::Bit, true},
    {"23", "Word Read", Access::Word, false},
    {"24", "Word Write", Access::Word, true},
    {"25", "Mixed Read", Access::None, false},
    {"26", "Mixed Write", Access::None, true},
}};

constexpr std::size_t codeAt = 4;
constexpr std::size_t digitsOfByte = 2;
constexpr std::size_t checkBytes = 2;

std::string stationAt(std::string_view request, std::size_t byte) {
    const std::size_t at = std::min(byte * digitsOfByte, request.size());
    return std::to_string(byteFromHex(request.substr(at, digitsOfByte)));
}

const RequestCode* findRequestCode(std::string_view request) {
    const std::string_view digits = request.substr(std::min(codeAt, request.size()), digitsOfByte);
    const auto* const found = std::ranges::find(requestCodes, digits, &RequestCode::digits);
    return found != requestCodes.end() ? found : nullptr;
}

/// "TC" numbers above 47 lie in the block of "W", which has no bits: a bit there belongs to "TC".
SplitAddress splitBitWord(int word) {
    const RegisterKind& kind = *findRegisterKind("TC");
    const bool isInKind = word >= kind.base && word <= kind.base + kind.highestListed;
    return isInKind ? SplitAddress{std::string(kind.name), word - kind.base} : SplitRegisterAddress(word);
}

SimPosition positionAt(int address, Access access) {
    const bool bits = access == Access::Bit;
    // kept: an "SR" address comes back whole, not as a number within its block
    const SplitAddress split = bits ? splitBitWord(address / 16) : SplitRegisterAddress(address);
    const RegisterKind* const kind = findRegisterKind(split.kind);
    return {split.kind, decimal(split.number, kind->listWidth), bits ? std::to_string(address % 16) : ""};
}

std::string onOrOff(std::uint8_t value) {
    if (value != 0x00 && value != 0xFF) {
        throw typeMismatch();
    }
    return value == 0xFF ? "ON" : "OFF";
}

/// One line for each value; the position moves on as it did when the points were collected.
void rebuildPoints(PreparedRequest& prepared, std::span<const std::uint8_t> data, Access access) {
    const bool bits = access == Access::Bit;
    const std::size_t valueBytes = bits ? 1 : 2;
    if (data.size() % valueBytes != 0) {
        throw typeMismatch();
    }
    for (; !data.empty(); data = data.subspan(valueBytes)) {
        const std::string value = bits ? onOrOff(data.front()) : hexRun(data.first(valueBytes));
        prepared.points.push_back(
            simPointLine(bits ? SimPoint::BitWrite : SimPoint::ReloadedWordWrite, prepared.position, value));
        prepared.position = stepForward(prepared.position, access);
    }
}

void parseBody(PreparedRequest& prepared, const Bytes& bytes, const RequestCode& code) {
    if (bytes.size() < offset::data + (code.write ? checkBytes : 1)) {
        throw typeMismatch();
    }
    prepared.position = positionAt(bytes[offset::address] + 256 * bytes[offset::address + 1], code.access);
    if (code.write) {
        const auto data = std::span(bytes).subspan(offset::data);
        rebuildPoints(prepared, data.first(data.size() - checkBytes), code.access);
    } else {
        prepared.length = std::to_string(bytes[offset::count]);
    }
}

} // namespace

std::string simPointLine(SimPoint form, const SimPosition& position, std::string_view value) {
    const PointForm& shape = pointForms.at(static_cast<std::size_t>(form));
    std::string line = std::string(shape.lead) + position.reg + position.address;
    if (shape.access == Access::Bit) {
        line += '.' + position.bit;
    }
    return (line += '\t').append(value);
}

std::string simWordValue(std::string_view text, bool hexadecimal) {
    constexpr std::size_t digits = 4;
    if (hexadecimal) {
        const std::string filled = std::string(digits, '0').append(text);
        return filled.substr(filled.size() - digits);
    }
    const std::int32_t value = toLong(text);
    if (value > std::numeric_limits<std::uint16_t>::max() ||
        value < std::numeric_limits<std::int16_t>::min()) {
        throw overflow();
    }
    return hex(value, digits);
}

PreparedRequest parsePreparedRequest(std::string_view request) {
    PreparedRequest prepared;
    prepared.da = stationAt(request, offset::destination);
    prepared.sa = stationAt(request, offset::source);
    const RequestCode* const code = findRequestCode(request);
    if (code != nullptr) {
        prepared.mode = code->mode;
        prepared.supported = code->access != Access::None;
    }
    if (prepared.supported) {
        parseBody(prepared, bytesOfFrameText(request), *code);
    }
    return prepared;
}

std::string preparedAnswerData(std::string_view answer) {
    constexpr std::size_t headerDigits = 8;
    constexpr std::size_t checkDigits = 4;
    if (answer.size() < headerDigits + checkDigits) {
        return {};
    }
    return std::string(answer.substr(headerDigits, answer.size() - headerDigits - checkDigits));
}

} // namespace varda
