#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// Whether two names are the same without regard to the case of A to Z. Bytes above 127 have no case: which
/// letter they are depends on a code page that no file tells.
bool equalNames(std::string_view left, std::string_view right);

/// What a hash begins with, and what it multiplies by.
using HashKey = std::array<std::uint64_t, 2>;

/// Drawn once for this process: there is no way known to write a file whose names collide for a key that
/// nobody has seen.
const HashKey& drawnKey();

/// A number that is the same for names that equalNames holds for.
std::uint32_t hashOfName(std::string_view name, const HashKey& key = drawnKey());

/// A number of a text whose case counts. 32 bits are what NameIndex keeps.
std::uint32_t hashOfText(std::string_view text, const HashKey& key = drawnKey());

/// Finds the number of an item by the item's name. The items themselves, and with them their names, belong to
/// the caller.
///
/// Hashes and numbers lie side by side in one block, so that a search in hundreds of thousands of items
/// touches little memory; a map of nodes took four times as long there.
class NameIndex {
public:
    /// @param hash of the name that is looked for
    /// @param hasName tells of the number of an item whether the item has the name
    template <typename HasName>
    std::optional<std::uint32_t> find(std::uint32_t hash, HasName hasName) const {
        if (slots_.empty()) {
            return std::nullopt;
        }
        for (std::size_t place = placeOf(hash); slots_[place].item != none; place = next(place)) {
            if (slots_[place].hash == hash && hasName(slots_[place].item)) {
                return slots_[place].item;
            }
        }
        return std::nullopt;
    }

    /// Has the memory fetched that a search for the hash is going to touch; without room it does nothing.
    void expect(std::uint32_t hash) const {
        if (!slots_.empty()) {
            __builtin_prefetch(&slots_[placeOf(hash)]);
        }
    }

    /// Makes room for a number of items in one go.
    void reserve(std::size_t count);

    /// Adds an item whose name is not there yet.
    void insert(std::uint32_t hash, std::uint32_t item);

    /// Takes an item out that is there.
    void remove(std::uint32_t hash, std::uint32_t item);

    /// Lowers the numbers of all items behind one that went away.
    void closeGap(std::uint32_t item);

    void clear() {
        slots_.clear();
        count_ = 0;
    }

private:
    static constexpr std::uint32_t none = UINT32_MAX;

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t item = none;
    };

    std::size_t placeOf(std::uint32_t hash) const { return hash & (slots_.size() - 1); }
    std::size_t distance(std::size_t from, std::size_t to) const { return (to - from) & (slots_.size() - 1); }
    std::size_t next(std::size_t place) const { return (place + 1) & (slots_.size() - 1); }
    void put(Slot slot);
    void resize(std::size_t slots);

    std::vector<Slot> slots_; ///< a power of two of them, at least half of them free
    std::size_t count_ = 0;
};

} // namespace varda::core
