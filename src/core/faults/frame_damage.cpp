#include "core/faults/frame_damage.h"

#include "core/protocol/crc16.h"
#include "core/protocol/frame.h"

#include <algorithm>
#include <span>

namespace varda::inline core {
namespace {

constexpr std::size_t bitsOfByte = 8;

/// Where the frame check stands; nothing where there is no room for one. What follows a frame, as one byte
/// does a mixed request, is no part of it.
std::optional<std::size_t> checkPlace(const Bytes& bytes) {
    if (const auto frame = core::parse(bytes)) {
        return frame->size() - frame_size::check;
    }
    return bytes.size() >= frame_size::envelope ? std::optional(bytes.size() - frame_size::check)
                                                : std::nullopt;
}

std::uint16_t rightCheck(const Bytes& bytes, std::size_t place) {
    return crc16(std::span(bytes).first(place));
}

void setCheck(Bytes& bytes, std::size_t place, std::uint32_t check) {
    bytes[place] = static_cast<std::uint8_t>(check & 0xFFU);
    bytes[place + 1] = static_cast<std::uint8_t>(check >> 8U);
}

/// Changes a byte; a check that was right is right again.
void changeByte(Bytes& bytes, std::size_t index, std::uint32_t value) {
    const auto place = checkPlace(bytes);
    const bool wasRight = place && lowHigh(bytes, *place) == rightCheck(bytes, *place);
    bytes[index] = static_cast<std::uint8_t>(value);
    if (wasRight) {
        setCheck(bytes, *place, rightCheck(bytes, *place));
    }
}

/// A number of the range other than `present`; nothing where there is none.
std::optional<std::uint32_t> another(std::uint32_t present, const FaultRange& range, FaultDraws& draws) {
    const std::uint32_t drawn = draws.within(range);
    if (drawn != present) {
        return drawn;
    }
    const std::uint32_t next = drawn == range.high ? range.low : drawn + 1;
    return next == present ? std::nullopt : std::optional(next);
}

Bytes noise(std::uint32_t count, FaultDraws& draws) {
    Bytes drawn(count);
    std::ranges::generate(drawn, [&draws] { return static_cast<std::uint8_t>(draws.below(256)); });
    return drawn;
}

} // namespace

bool isRequestCode(const Bytes& frame) {
    return frame.size() > offset::command && findCommand(frame[offset::command]) != nullptr;
}

std::optional<std::uint32_t> changeCommand(Bytes& frame, FaultDraws& draws) {
    if (frame.size() <= offset::command) {
        return std::nullopt;
    }
    const std::uint32_t mark = isRequestCode(frame) ? 0 : answerMark;
    const FaultRange codes{commands().front().code + mark, commands().back().code + mark};
    const auto code = another(frame[offset::command], codes, draws);
    changeByte(frame, offset::command, code.value());
    return code;
}

std::optional<std::uint32_t> changeStation(Bytes& frame, const FaultRange& stations, FaultDraws& draws) {
    const std::size_t place = isRequestCode(frame) ? offset::destination : offset::source;
    if (frame.size() <= place) {
        return std::nullopt;
    }
    const auto station = another(frame[place], stations, draws);
    if (station) {
        changeByte(frame, place, *station);
    }
    return station;
}

std::optional<std::uint32_t> breakCheck(Bytes& frame, FaultDraws& draws) {
    const auto place = checkPlace(frame);
    if (!place) {
        return std::nullopt;
    }
    const auto present = static_cast<std::uint32_t>(lowHigh(frame, *place));
    const auto check = another(present, {0, 0xFFFF}, draws);
    setCheck(frame, *place, check.value());
    return check;
}

std::optional<std::uint32_t> flipBits(Bytes& frame, const FaultRange& bits, FaultDraws& draws) {
    const std::size_t all = frame.size() * bitsOfByte;
    const std::size_t wanted = std::min<std::size_t>(draws.within(bits), all);
    std::vector<std::size_t> flipped;
    while (flipped.size() < wanted) {
        const auto bit = static_cast<std::size_t>(draws.below(all));
        if (std::ranges::find(flipped, bit) == flipped.end()) {
            flipped.push_back(bit);
            frame[bit / bitsOfByte] ^= static_cast<std::uint8_t>(1U << (bit % bitsOfByte));
        }
    }
    return wanted == 0 ? std::nullopt : std::optional(static_cast<std::uint32_t>(wanted));
}

std::optional<std::uint32_t> cutEnd(Bytes& frame, const FaultRange& bytes, FaultDraws& draws) {
    const std::size_t drawn = draws.within(bytes);
    if (frame.size() < 2) {
        return std::nullopt;
    }
    const std::size_t lost = std::min(drawn, frame.size() - 1);
    frame.resize(frame.size() - lost);
    return static_cast<std::uint32_t>(lost);
}

std::optional<std::uint32_t> addNoiseBefore(Bytes& frame, const FaultRange& bytes, FaultDraws& draws) {
    const Bytes drawn = noise(draws.within(bytes), draws);
    frame.insert(frame.begin(), drawn.begin(), drawn.end());
    return static_cast<std::uint32_t>(drawn.size());
}

std::optional<std::uint32_t> addNoiseBehind(Bytes& frame, const FaultRange& bytes, FaultDraws& draws) {
    const Bytes drawn = noise(draws.within(bytes), draws);
    frame.insert(frame.end(), drawn.begin(), drawn.end());
    return static_cast<std::uint32_t>(drawn.size());
}

} // namespace varda::core
