#include "core/base/name_index.h"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <exception>
#include <random>
#include <utility>

namespace varda::inline core {
namespace {

char lowerCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

constexpr std::size_t wordSize = sizeof(std::uint64_t);
constexpr unsigned lastByte = 56; ///< bits before the last byte of a word
constexpr unsigned halfByte = 4;

/// Up to eight characters as one number; missing ones count as zero.
std::uint64_t wordOf(std::string_view characters) {
    std::array<char, wordSize> word{};
    std::copy(characters.begin(), characters.end(), word.begin());
    return std::bit_cast<std::uint64_t>(word);
}

/// The same for eight characters at a time.
std::uint64_t lowerCase(std::uint64_t word) {
    constexpr std::uint64_t each = 0x0101010101010101U;
    const std::uint64_t letters = word & (0x7FU * each);
    const std::uint64_t fromA = letters + (0x80U - 'A') * each;
    const std::uint64_t beyondZ = letters + (0x7FU - 'Z') * each;
    const std::uint64_t isUpper = (fromA ^ beyondZ) & ~word & (0x80U * each);
    return word | (isUpper >> 2U);
}

using Key = std::array<std::uint64_t, 2>;

Key drawKey() {
    try {
        std::random_device random;
        const auto draw = [&random] { return (std::uint64_t{random()} << 32U) | random(); };
        return {draw(), draw()};
    } catch (const std::exception&) { // no source of chance, for example without a handle left
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        return {static_cast<std::uint64_t>(now), 0};
    }
}

/// SipHash-1-3 with a key of this process: nobody can write a file whose names have one hash.
class SipHash {
public:
    void take(std::uint64_t word) {
        d_ ^= word;
        round();
        a_ ^= word;
    }

    std::uint64_t result() {
        c_ ^= 0xFFU;
        round();
        round();
        round();
        return a_ ^ b_ ^ c_ ^ d_;
    }

private:
    void round() {
        a_ += b_;
        c_ += d_;
        b_ = std::rotl(b_, 13) ^ a_;
        d_ = std::rotl(d_, 16) ^ c_;
        a_ = std::rotl(a_, 32) + d_;
        c_ += b_;
        b_ = std::rotl(b_, 17) ^ c_;
        d_ = std::rotl(d_, 21) ^ a_;
        c_ = std::rotl(c_, 32);
    }

    static const Key& key() {
        static const Key drawn = drawKey();
        return drawn;
    }

    std::uint64_t a_ = key()[0] ^ 0x736F6D6570736575U;
    std::uint64_t b_ = key()[1] ^ 0x646F72616E646F6DU;
    std::uint64_t c_ = key()[0] ^ 0x6C7967656E657261U;
    std::uint64_t d_ = key()[1] ^ 0x7465646279746573U;
};

/// @return what follows the last whole word
template <typename Fold>
std::uint64_t takeWords(std::string_view text, SipHash& hash, Fold fold) {
    for (; text.size() >= wordSize; text.remove_prefix(wordSize)) {
        hash.take(fold(wordOf(text.substr(0, wordSize))));
    }
    return fold(wordOf(text));
}

} // namespace

bool equalNames(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char one, char other) { return lowerCase(one) == lowerCase(other); });
}

std::uint32_t hashOfName(std::string_view name) {
    if (name.empty()) {
        return 0;
    }
    // The low half of the last character goes into the lowest bits alone, so that numbered names lie in
    // groups of ten beside one another, and a list that is looked up in its order finds nine of them in the
    // cache.
    const auto last = static_cast<std::uint8_t>(lowerCase(name.back()));
    SipHash hash;
    const std::uint64_t rest =
        takeWords(name.substr(0, name.size() - 1), hash, [](std::uint64_t word) { return lowerCase(word); });
    const std::uint64_t ending = (name.size() << halfByte) | (last >> halfByte);
    hash.take(rest | (ending << lastByte));
    return static_cast<std::uint32_t>(hash.result()) ^ (last & 0x0FU);
}

std::size_t SeededHash::operator()(std::string_view text) const {
    SipHash hash;
    const std::uint64_t rest = takeWords(text, hash, [](std::uint64_t word) { return word; });
    hash.take(rest | (std::uint64_t{text.size()} << lastByte));
    return static_cast<std::size_t>(hash.result());
}

void NameIndex::reserve(std::size_t count) {
    if (slots_.size() < 2 * count) {
        resize(std::bit_ceil(2 * count));
    }
}

void NameIndex::insert(std::uint32_t hash, std::uint32_t item) {
    reserve(count_ + 1);
    put({hash, item});
    ++count_;
}

void NameIndex::remove(std::uint32_t hash, std::uint32_t item) {
    std::size_t hole = placeOf(hash);
    while (slots_[hole].item != item) {
        hole = next(hole);
    }
    // Whatever was pushed past the hole moves up, for a search ends at the first free place.
    for (std::size_t place = next(hole); slots_[place].item != none; place = next(place)) {
        const std::size_t wanted = placeOf(slots_[place].hash);
        if (distance(wanted, place) >= distance(hole, place)) {
            slots_[hole] = slots_[place];
            hole = place;
        }
    }
    slots_[hole] = {};
    --count_;
}

void NameIndex::closeGap(std::uint32_t item) {
    for (Slot& slot : slots_) {
        if (slot.item != none && slot.item > item) {
            --slot.item;
        }
    }
}

void NameIndex::put(Slot slot) {
    std::size_t place = placeOf(slot.hash);
    while (slots_[place].item != none) {
        place = next(place);
    }
    slots_[place] = slot;
}

void NameIndex::resize(std::size_t slots) {
    const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(slots));
    for (const Slot& slot : old) {
        if (slot.item != none) {
            put(slot);
        }
    }
}

} // namespace varda::core
