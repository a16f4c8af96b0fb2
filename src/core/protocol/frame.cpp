#include "core/protocol/frame.h"

#include "core/protocol/crc16.h"

#include <algorithm>
#include <array>

namespace varda::inline core {
namespace {

constexpr std::array<Command, 6> commandTable = {{
    {command::bitRead, Access::Bit, false},
    {command::bitWrite, Access::Bit, true},
    {command::wordRead, Access::Word, false},
    {command::wordWrite, Access::Word, true},
    {command::mixedRead, std::nullopt, false},
    {command::mixedWrite, std::nullopt, true},
}};

} // namespace

std::span<const Command> commands() { return commandTable; }

const Command* findCommand(std::uint8_t code) {
    const auto* const found = std::ranges::find(commandTable, code, &Command::code);
    return found != commandTable.end() ? found : nullptr;
}

std::optional<Frame> parse(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < frame_size::envelope || bytes.size() < frame_size::envelope + bytes[offset::length]) {
        return std::nullopt;
    }
    const std::size_t checked = frame_size::header + bytes[offset::length];
    if (crc16(bytes.first(checked)) != lowHigh(bytes, checked)) {
        return std::nullopt;
    }
    return Frame{bytes[offset::destination], bytes[offset::source], bytes[offset::command],
                 bytes.subspan(offset::body, bytes[offset::length])};
}

} // namespace varda::core
