#include "core/files/profile_file.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace varda {
namespace {

using test::TemporaryFolder;

/// What a file should hold: lower-case names, values as they are read.
using Table = std::map<std::string, std::map<std::string, std::string>>;

class TableSource {
public:
    explicit TableSource(std::uint32_t seed) : random_(seed) {}

    std::size_t below(std::size_t limit) { return random_() % limit; }

    /// Sets random values in the file and in the table.
    void fill(ProfileFile& file, Table& table, std::size_t values) {
        for (std::size_t value = 0; value < values; ++value) {
            const std::string section = name(3);
            const std::string key = name(12);
            const std::string text = randomValue();
            file.setValue(anyCase(section), anyCase(key), text);
            table[section][key] = asRead(text);
        }
    }

    /// Lines that hold no value, put between the lines of a file.
    std::string withNoise(const std::string& text) {
        static const std::vector<std::string> noise = {"; comment = 1\r\n", "\r\n",  "  \t\r\n",
                                                       "no value\n",        "=\r\n", "[open\n"};
        std::string result;
        for (const char character : text) {
            result.push_back(character);
            while (character == '\n' && below(4) == 0) {
                result += noise[below(noise.size())];
            }
        }
        return result;
    }

private:
    std::string name(std::size_t variety) { return "name " + std::to_string(below(variety)); }

    std::string anyCase(std::string text) {
        for (char& character : text) {
            if (character >= 'a' && character <= 'z' && below(2) == 0) {
                character = static_cast<char>(character - 'a' + 'A');
            }
        }
        return text;
    }

    std::string randomValue() {
        static constexpr std::string_view favourites = " \t=;[]'\"0AF";
        std::string text(below(20), ' ');
        for (char& character : text) {
            character = below(2) == 0 ? favourites[below(favourites.size())]
                                      : static_cast<char>(static_cast<unsigned char>(1 + below(255)));
        }
        return text;
    }

    /// The reading of a value, put down a second time and in another way than in the file.
    static std::string asRead(std::string text) {
        const auto isBlank = [](char character) {
            return character == ' ' || character == '\t' || character == '\r' || character == '\n';
        };
        for (char& character : text) {
            character = character == '\r' || character == '\n' ? ' ' : character;
        }
        while (!text.empty() && isBlank(text.back())) {
            text.pop_back();
        }
        while (!text.empty() && isBlank(text.front())) {
            text.erase(0, 1);
        }
        if (text.size() > 1 && text.front() == text.back() && (text[0] == '"' || text[0] == '\'')) {
            return text.substr(1, text.size() - 2);
        }
        return text;
    }

    std::mt19937 random_;
};

void expectHolds(const ProfileFile& file, const Table& table) {
    for (const auto& [section, values] : table) {
        for (const auto& [key, value] : values) {
            ASSERT_EQ(file.value(section, key, "missing", 1024), value) << section << " / " << key;
        }
    }
}

TEST(ProfileFileRandom, TenThousandTablesComeBackAsTheyWereSaved) {
    constexpr std::uint32_t seed = 20240517;
    std::cout << "seed " << seed << '\n';
    TableSource source(seed);
    const TemporaryFolder folder;
    const std::string path = folder.file("table.ini");
    for (int round = 0; round < 10'000; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        ProfileFile file;
        Table table;
        source.fill(file, table, source.below(40));
        ProfileFile loaded = ProfileFile::parse(source.withNoise(file.text()));
        expectHolds(loaded, table);
        source.fill(loaded, table, source.below(40));
        expectHolds(loaded, table);
        if (round % 100 == 0) {
            loaded.save(path);
            expectHolds(ProfileFile::load(path), table);
        }
        expectHolds(ProfileFile::parse(loaded.text()), table);
        ASSERT_FALSE(HasFatalFailure());
    }
}

ProfileFile tableOf(int pairs) {
    ProfileFile file;
    file.setValue("Information", "Total", std::to_string(pairs));
    for (int pair = 0; pair < pairs; ++pair) {
        file.setValue("Receive", std::to_string(pair), "0102210600000010ABCD");
        file.setValue("Send", std::to_string(pair), "0201A10C00112233445566778899AABBCD");
    }
    return file;
}

void readAll(const ProfileFile& file, int pairs) {
    for (int pair = 0; pair < pairs; ++pair) {
        ASSERT_EQ(file.value("Receive", std::to_string(pair), "", 1024), "0102210600000010ABCD");
        ASSERT_EQ(file.value("Send", std::to_string(pair), "", 1024), "0201A10C00112233445566778899AABBCD");
    }
}

double secondsOfProcessor(int pairs) {
    const std::clock_t start = std::clock();
    readAll(ProfileFile::parse(tableOf(pairs).text()), pairs);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

TEST(ProfileFileSize, TenTimesAsManyPairsTakeNowhereNearAHundredTimesAsLong) {
    double few = secondsOfProcessor(2'000);
    double many = secondsOfProcessor(20'000);
    for (int repetition = 0; repetition < 4; ++repetition) {
        few = std::min(few, secondsOfProcessor(2'000));
        many = std::min(many, secondsOfProcessor(20'000));
    }
    std::cout << "2,000 pairs " << few << " s, 20,000 pairs " << many << " s\n";
    // A search through the lines would cost a hundred times as much. The memory of a larger table is slower,
    // and other programs take their share.
    EXPECT_LT(many, 40 * few);
}

} // namespace
} // namespace varda
