#include "platform/name_index.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace varda {
namespace {

char lowerCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

} // namespace

bool equalNames(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char one, char other) { return lowerCase(one) == lowerCase(other); });
}

std::uint32_t hashOfName(std::string_view name) {
    // FNV-1: the last character goes into the lowest bits alone, so that numbered names lie in groups of ten
    // beside one another and a list that is looked up in its order finds nine of them in the cache.
    std::uint32_t hash = 2166136261U;
    for (const char character : name) {
        hash = (hash * 16777619U) ^ static_cast<std::uint8_t>(lowerCase(character));
    }
    return hash;
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

} // namespace varda
