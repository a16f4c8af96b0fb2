#include "core/base/name_index.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstring>
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

/// Up to eight characters as one number; missing ones count as zero. Fewer than eight are taken one by one:
/// copied into a word and read back at once they hold the processor up until it has all memory that it asked
/// for before, which made looking up 200,000 names in turn take three times as long.
std::uint64_t wordOf(std::string_view characters) {
    std::uint64_t word = 0;
    if (characters.size() == wordSize) {
        std::memcpy(&word, characters.data(), wordSize);
        return word;
    }
    for (std::size_t place = 0; place < characters.size(); ++place) {
        word |= std::uint64_t{static_cast<std::uint8_t>(characters[place])} << (8U * place);
    }
    return word;
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

HashKey drawKey() {
    try {
        std::random_device random;
        const auto draw = [&random] { return (std::uint64_t{random()} << 32U) | random(); };
        return {draw(), draw()};
    } catch (const std::exception&) { // no source of chance, for example without a handle left
        constexpr std::uint64_t spread = 0x9E3779B97F4A7C15U; // the golden ratio's bits
        const auto now =
            static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        return {now, now * spread};
    }
}

__extension__ using Product = unsigned __int128;

/// Multiplies what there is by one half of a key, beginning with the other one, and folds the halves of each
/// product. With SipHash, of which more is known, a look-up took twice as long.
class KeyedHash {
public:
    explicit KeyedHash(const HashKey& key) : factor_(key[1] | 1U), hash_(key[0]) {}

    void take(std::uint64_t word) { hash_ = folded(hash_ ^ word); }

    /// Folded once more, for the last word alone would leave its mark on few bits.
    std::uint64_t result() const { return folded(hash_); }

private:
    std::uint64_t folded(std::uint64_t word) const {
        const Product product = Product{word} * factor_;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
    }

    std::uint64_t factor_;
    std::uint64_t hash_;
};

/// @return what follows the last whole word
template <typename Fold>
std::uint64_t takeWords(std::string_view text, KeyedHash& hash, Fold fold) {
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

const HashKey& drawnKey() {
    static const HashKey drawn = drawKey();
    return drawn;
}

std::uint32_t hashOfName(std::string_view name, const HashKey& key) {
    if (name.empty()) {
        return 0;
    }
    // The low half of the last character goes into the lowest bits alone, so that numbered names lie in
    // groups of ten beside one another, and a list that is looked up in its order finds nine of them in the
    // cache.
    const auto last = static_cast<std::uint8_t>(lowerCase(name.back()));
    KeyedHash hash(key);
    const std::uint64_t rest =
        takeWords(name.substr(0, name.size() - 1), hash, [](std::uint64_t word) { return lowerCase(word); });
    const std::uint64_t ending = (name.size() << halfByte) | (last >> halfByte);
    hash.take(rest | (ending << lastByte));
    return static_cast<std::uint32_t>(hash.result()) ^ (last & 0x0FU);
}

std::uint32_t hashOfText(std::string_view text, const HashKey& key) {
    KeyedHash hash(key);
    const std::uint64_t rest = takeWords(text, hash, [](std::uint64_t word) { return word; });
    hash.take(rest | (std::uint64_t{text.size()} << lastByte));
    return static_cast<std::uint32_t>(hash.result());
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
