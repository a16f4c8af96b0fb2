#include "core/base/name_index.h"

#include <gtest/gtest.h>

#include <bitset>
#include <cstdint>
#include <iostream>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace varda {
namespace {

/// A hash without a seed, FNV-1; each block of a name leads it from one state to the next.
std::uint32_t plainHash(std::uint32_t state, const std::string& block) {
    for (const char character : block) {
        state = (state * 16777619U) ^ static_cast<std::uint8_t>(character);
    }
    return state;
}

class CollidingBlocks {
public:
    /// Two blocks that lead from the present state to one and the same, which becomes the present one.
    std::pair<std::string, std::string> next() {
        std::unordered_map<std::uint32_t, std::string> seen;
        for (;;) {
            const std::string block = anyBlock();
            const std::uint32_t state = plainHash(state_, block);
            const auto [found, isNew] = seen.emplace(state, block);
            if (!isNew && found->second != block) {
                state_ = state;
                return {found->second, block};
            }
        }
    }

private:
    std::string anyBlock() {
        std::string block(8, 'a');
        for (char& character : block) {
            character = static_cast<char>('a' + static_cast<int>(random_() % 26));
        }
        return block;
    }

    std::mt19937 random_{1};
    std::uint32_t state_ = 2166136261U;
};

/// Twice as many names for each pair of blocks, all of them with one plain hash.
std::vector<std::string> collidingNames(int pairs) {
    CollidingBlocks blocks;
    std::vector<std::string> names = {""};
    for (int pair = 0; pair < pairs; ++pair) {
        const auto [one, other] = blocks.next();
        std::vector<std::string> longer;
        for (const std::string& name : names) {
            longer.push_back(name + one);
            longer.push_back(name + other);
        }
        names = std::move(longer);
    }
    return names;
}

TEST(NameIndex, AFileOfCollidingKeysTakesNoMoreComparisonsThanAnother) {
    const std::vector<std::string> names = collidingNames(11);
    std::set<std::uint32_t> plainHashes;
    NameIndex index;
    std::size_t comparisons = 0;
    const auto find = [&](const std::string& name) {
        return index.find(hashOfName(name), [&](std::uint32_t item) {
            ++comparisons;
            return names[item] == name;
        });
    };
    for (std::uint32_t item = 0; item < names.size(); ++item) {
        plainHashes.insert(plainHash(2166136261U, names[item]));
        ASSERT_FALSE(find(names[item]).has_value());
        index.insert(hashOfName(names[item]), item);
    }
    EXPECT_EQ(plainHashes.size(), 1U); // else the test proves nothing
    EXPECT_LT(comparisons, names.size()) << "adding";
    comparisons = 0;
    for (std::uint32_t item = 0; item < names.size(); ++item) {
        ASSERT_EQ(find(names[item]), item);
    }
    EXPECT_LT(comparisons, 2 * names.size()) << "looking up";
}

/// Names that share hashes, so that searches pass over one another's places.
class CrowdedIndex {
public:
    explicit CrowdedIndex(unsigned seed) : random_(seed) {}

    void addOne() {
        names_.push_back("n" + std::to_string(++added_));
        index_.insert(hashOf(names_.back()), static_cast<std::uint32_t>(names_.size() - 1));
    }
    void removeOne() {
        const std::size_t item = random_() % names_.size();
        index_.remove(hashOf(names_[item]), static_cast<std::uint32_t>(item));
        index_.closeGap(static_cast<std::uint32_t>(item));
        names_.erase(names_.begin() + static_cast<std::ptrdiff_t>(item));
    }
    bool isEmpty() const { return names_.empty(); }
    bool findsAll() const {
        for (std::uint32_t item = 0; item < names_.size(); ++item) {
            if (find(names_[item]) != item) {
                return false;
            }
        }
        return !find("another");
    }

private:
    static std::uint32_t hashOf(const std::string& name) { return hashOfName(name) % 7U + 250U; }
    std::optional<std::uint32_t> find(const std::string& name) const {
        return index_.find(hashOf(name), [&](std::uint32_t item) { return names_[item] == name; });
    }

    std::mt19937 random_;
    NameIndex index_;
    std::vector<std::string> names_;
    int added_ = 0;
};

TEST(NameIndex, FindsWhatIsLeftAfterRandomRemovals) {
    const unsigned seed = std::random_device{}();
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    CrowdedIndex index(seed + 1);
    for (int edit = 0; edit < 3000; ++edit) {
        if (index.isEmpty() || random() % 100 < 52) {
            index.addOne();
        } else {
            index.removeOne();
        }
        ASSERT_TRUE(index.findsAll()) << "edit " << edit;
    }
}

TEST(NameIndex, ClearedIndexFindsNothingAndTakesItemsAgain) {
    NameIndex index;
    index.insert(1, 0);
    index.clear();
    const auto any = [](std::uint32_t /*item*/) { return true; };
    EXPECT_EQ(index.find(1, any), std::nullopt);
    index.insert(1, 5);
    EXPECT_EQ(index.find(1, any), std::optional<std::uint32_t>(5));
}

TEST(NameIndex, HashOfANameIgnoresTheCaseOfAToZAlone) {
    constexpr std::uint32_t seed = 7;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    for (int round = 0; round < 10'000; ++round) {
        std::string name;
        for (auto length = random() % 20; length > 0; --length) {
            name.push_back(static_cast<char>(static_cast<unsigned char>(random() & 0xFFU)));
        }
        std::string other = name;
        for (char& character : other) {
            if ((character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z')) {
                character = static_cast<char>(character ^ (random() % 2 == 0 ? 0x20 : 0));
            }
        }
        ASSERT_TRUE(equalNames(name, other)) << round;
        ASSERT_EQ(hashOfName(name), hashOfName(other)) << round;
    }
    EXPECT_NE(hashOfName("@"), hashOfName("`"));
    EXPECT_NE(hashOfName("["), hashOfName("{"));
    EXPECT_NE(hashOfName("\xC4"), hashOfName("\xE4"));
}

TEST(NameIndex, NamesOfDifferentLengthsHaveDifferentHashes) {
    std::set<std::uint32_t> hashes;
    for (std::size_t length = 0; length < 64; ++length) {
        hashes.insert(hashOfName(std::string(length, '\0')));
    }
    EXPECT_EQ(hashes.size(), 64U);
}

/// Drawn keys: with each of them a table has to be as even.
std::vector<HashKey> someKeys() {
    constexpr std::uint64_t seed = 20011;
    std::cout << "seed " << seed << '\n';
    std::mt19937_64 random(seed);
    std::vector<HashKey> keys(8);
    for (HashKey& key : keys) {
        key = {random(), random()};
    }
    return keys;
}

TEST(NameIndex, TextsThatDifferInCaseAloneDoNotCollide) {
    const HashKey key = someKeys().front();
    std::set<std::uint32_t> hashes;
    for (unsigned cases = 0; cases < 1024; ++cases) {
        std::string text(10, 'a');
        for (unsigned place = 0; place < text.size(); ++place) {
            text[place] = (cases >> place) % 2 == 0 ? 'a' : 'A';
        }
        hashes.insert(hashOfText(text, key));
    }
    EXPECT_EQ(hashes.size(), 1024U);
}

/// How many of 4096 places are taken by texts that are the same but for one number of four digits.
std::size_t placesTaken(std::size_t length, std::size_t firstDigit, const HashKey& key) {
    constexpr unsigned places = 4096;
    std::bitset<places> taken;
    std::string text(length, '0');
    for (unsigned number = 0; number < places; ++number) {
        for (unsigned place = 0; place < 4; ++place) {
            text[firstDigit + place] = "0123456789ABCDEF"[(number >> (4 * place)) % 16];
        }
        taken.set(hashOfText(text, key) % places);
    }
    return taken.count();
}

/// Of as many places as there are texts thrown into them 63 of 100 are taken: so it is for texts of each
/// length, wherever the number stands in them.
TEST(NameIndex, AlikeTextsSpreadOverATable) {
    for (const HashKey& key : someKeys()) {
        for (std::size_t length = 4; length <= 40; length += 3) {
            for (std::size_t firstDigit = 0; firstDigit + 4 <= length; firstDigit += 2) {
                EXPECT_GT(placesTaken(length, firstDigit, key), 2375U)
                    << length << " characters, from " << firstDigit;
            }
        }
    }
}

} // namespace
} // namespace varda
