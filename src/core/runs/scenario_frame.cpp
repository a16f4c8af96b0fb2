#include "core/runs/scenario_frame.h"

#include "core/base/blanks.h"
#include "core/base/runtime_error.h"
#include "core/protocol/frame.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/single_requests.h"

#include <cmath>

namespace varda::inline core {
namespace {

constexpr std::size_t placesPerGroup = 3;

std::uint8_t byteAt(const Bytes& frame, std::size_t index) {
    if (index >= frame.size()) {
        throw subscriptOutOfRange();
    }
    return frame[index];
}

std::string_view group(std::string_view text, std::size_t index) {
    const std::size_t place = index * placesPerGroup;
    return withoutBlanksAround(place < text.size() ? text.substr(place, 2) : std::string_view());
}

} // namespace

int groupCount(std::size_t characters) {
    const auto length = static_cast<int>(characters);
    const auto separators = static_cast<int>(std::lround((length - 2) / 3.0));
    return (length - separators) / 2;
}

Bytes HexTextToBytes(std::string_view text, int count) {
    Bytes bytes;
    for (int index = 0; index < count; ++index) {
        bytes.push_back(byteFromHex(group(text, static_cast<std::size_t>(index))));
    }
    return bytes;
}

Bytes scenarioFrame(std::string_view line) { return HexTextToBytes(line, groupCount(line.size())); }

std::optional<int> scenarioAnswerLength(const Bytes& frame) {
    const Command* const sent = findCommand(byteAt(frame, offset::command));
    if (sent == nullptr || !sent->access) {
        return std::nullopt; // kept: a mixed frame waits for what the line before it expected
    }
    if (sent->writes) {
        return writeAnswerLength;
    }
    // kept: a count of 0 is not taken as 256 here
    return readAnswerSize(*sent->access, byteAt(frame, offset::count));
}

} // namespace varda::core
