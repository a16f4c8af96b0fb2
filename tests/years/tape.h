#pragma once

#include "core/base/bytes.h"

#include <cstdint>
#include <span>

namespace varda::years {

/// A number that stands for all that went over the lines, when, and what the programs made of it: a replay
/// that differs anywhere ends with another one.
class Tape {
public:
    void put(std::uint64_t number) {
        hash_ = (hash_ ^ number) * 0x0000'0100'0000'01B3U;
        hash_ ^= hash_ >> 29U;
    }

    void put(std::span<const std::uint8_t> bytes) {
        put(bytes.size());
        for (; bytes.size() >= sizeof(std::uint64_t); bytes = bytes.subspan(sizeof(std::uint64_t))) {
            putPart(bytes.first(sizeof(std::uint64_t)));
        }
        putPart(bytes);
    }

    std::uint64_t hash() const { return hash_; }

private:
    void putPart(std::span<const std::uint8_t> bytes) {
        std::uint64_t part = 0;
        for (const std::uint8_t byte : bytes) {
            part = part << 8U | byte;
        }
        put(part);
    }

    std::uint64_t hash_ = 0xCBF2'9CE4'8422'2325U;
};

} // namespace varda::years
