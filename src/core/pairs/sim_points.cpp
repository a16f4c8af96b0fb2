#include "core/pairs/sim_points.h"

#include "core/base/conversion.h"
#include "core/base/runtime_error.h"
#include "core/pairs/packet_builders.h"
#include "core/pairs/sim_kinds.h"
#include "core/protocol/frame.h"
#include "core/protocol/hex_text.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

namespace varda::inline core {
namespace {

struct PointShape {
    std::string_view lead; ///< tag and the TABs behind it, so that the columns line up
    Access access;
};

/// In the order of SimPointForm. A tag is seven characters long.
constexpr std::array<PointShape, 9> pointShapes = {{
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

constexpr std::size_t codeAt = 4;
constexpr std::size_t digitsOfByte = 2;

std::string stationAt(std::string_view request, std::size_t byte) {
    const std::size_t at = std::min(byte * digitsOfByte, request.size());
    return std::to_string(byteFromHex(request.substr(at, digitsOfByte)));
}

const Command* commandOf(std::string_view request) {
    const std::string_view digits = request.substr(std::min(codeAt, request.size()), digitsOfByte);
    const auto found = std::ranges::find_if(
        commands(), [digits](const Command& command) { return hex(command.code, digitsOfByte) == digits; });
    return found != commands().end() ? &*found : nullptr;
}

std::string_view modeOf(const Command& command) {
    const auto* const kind = std::ranges::find_if(simKinds, [&command](const SimKind& candidate) {
        return candidate.access == command.access && candidate.isWrite == command.writes;
    });
    return kind != simKinds.end() ? kind->mode : command.writes ? mixedWriteMode : mixedReadMode;
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
    return {split.kind, registerNumberText(split.kind, split.number),
            bits ? std::to_string(address % 16) : ""};
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
    const auto valueBytes = static_cast<std::size_t>(valueSize(access));
    if (data.size() % valueBytes != 0) {
        throw typeMismatch();
    }
    for (; !data.empty(); data = data.subspan(valueBytes)) {
        const std::string value = bits ? onOrOff(data.front()) : hexRun(data.first(valueBytes));
        prepared.points.push_back(simPointLine(
            bits ? SimPointForm::BitWrite : SimPointForm::ReloadedWordWrite, prepared.position, value));
        prepared.position = stepForward(prepared.position, access);
    }
}

void parseBody(PreparedRequest& prepared, const Bytes& bytes, const Command& command) {
    if (bytes.size() < offset::data + (command.writes ? frame_size::check : 1)) {
        throw typeMismatch();
    }
    const Access access = *command.access;
    prepared.position = positionAt(lowHigh(bytes, offset::address), access);
    if (command.writes) {
        const auto data = std::span(bytes).subspan(offset::data);
        rebuildPoints(prepared, data.first(data.size() - frame_size::check), access);
    } else {
        prepared.count = std::to_string(bytes[offset::count]);
    }
}

} // namespace

std::string simPointLine(SimPointForm form, const SimPosition& position, std::string_view value) {
    const PointShape& shape = pointShapes.at(static_cast<std::size_t>(form));
    std::string line = std::string(shape.lead) + position.kind + position.number;
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
    const std::int32_t value = toLong(text, "Value");
    if (value > std::numeric_limits<std::uint16_t>::max() ||
        value < std::numeric_limits<std::int16_t>::min()) {
        throw overflow();
    }
    return hex(value, digits);
}

namespace {

PreparedRequest parsed(std::string_view request) {
    PreparedRequest prepared;
    prepared.destination = stationAt(request, offset::destination);
    prepared.source = stationAt(request, offset::source);
    const Command* const command = commandOf(request);
    if (command != nullptr) {
        prepared.mode = modeOf(*command);
        prepared.supported = command->access.has_value();
    }
    if (prepared.supported) {
        parseBody(prepared, bytesOfFrameText(request), *command);
    }
    return prepared;
}

} // namespace

PreparedRequest parsePreparedRequest(std::string_view request) {
    return advised(
        [request] { return parsed(request); },
        [](const RuntimeError& /*error*/) {
            return "The request of this pair is no whole frame. Remove the pair, or mend its file.";
        });
}

std::string preparedAnswerData(std::string_view answer) {
    constexpr std::size_t headerDigits = 8;
    constexpr std::size_t checkDigits = 4;
    if (answer.size() < headerDigits + checkDigits) {
        return {};
    }
    return std::string(answer.substr(headerDigits, answer.size() - headerDigits - checkDigits));
}

} // namespace varda::core
