#include "core/files/profile_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace varda {
namespace {

using Texts = std::vector<std::string_view>;

Texts numberedValues(const ProfileFile& file) { return file.numberedValues("S", 100, 100); }

TEST(NumberedValues, StandInTheOrderOfTheirNumbers) {
    EXPECT_EQ(numberedValues(ProfileFile::parse("[S]\n0=a\n1=b\n2=c\n")), (Texts{"a", "b", "c"}));
    EXPECT_EQ(numberedValues(ProfileFile::parse("[S]\n2=c\n0=a\n1=b\n")), (Texts{"a", "b", "c"}));
    EXPECT_EQ(numberedValues(ProfileFile::parse("[S]\n0=a\nx=y\n1=b\n")), (Texts{"a", "b"}));
}

TEST(NumberedValues, EndBeforeTheFirstThatIsMissingOrEmpty) {
    EXPECT_EQ(numberedValues(ProfileFile::parse("[S]\n0=a\n2=c\n")), Texts{"a"});
    EXPECT_EQ(numberedValues(ProfileFile::parse("[S]\n0=a\n1=\n2=c\n")), Texts{"a"});
    EXPECT_EQ(numberedValues(ProfileFile::parse("[S]\n1=b\n")), Texts());
    EXPECT_EQ(numberedValues(ProfileFile::parse("[T]\n0=a\n")), Texts());
}

TEST(NumberedValues, AreNoMoreThanWanted) {
    const ProfileFile file = ProfileFile::parse("[S]\n0=a\n1=b\n");
    EXPECT_EQ(file.numberedValues("S", 1, 100), Texts{"a"});
    EXPECT_EQ(file.numberedValues("S", 0, 100), Texts());
}

TEST(NumberedValues, AreCutAndUnquotedAsSingleOnesAre) {
    const ProfileFile file = ProfileFile::parse("[S]\n0= \" abcd \" \n1='b'\n");
    EXPECT_EQ(file.numberedValues(" s ", 100, 4), (Texts{" ab", "b"}));
    EXPECT_EQ(file.numberedValues("S", 100, 1), Texts());
}

TEST(NumberedValues, OfANumberTwiceTheFirstCounts) {
    EXPECT_EQ(numberedValues(ProfileFile::parse("[S]\n0=a\n1=b\n0=c\n1=d\n2=e\n")), (Texts{"a", "b", "e"}));
    EXPECT_EQ(numberedValues(ProfileFile::parse("[S]\n1=b\n0=a\n1=c\n")), (Texts{"a", "b"}));
}

TEST(NumberedValues, ANumberIsSpelledInOneWayOnly) {
    const ProfileFile file = ProfileFile::parse("[S]\n0=a\n01=x\n+1=y\n1=b\n00=z\n");
    EXPECT_EQ(numberedValues(file), (Texts{"a", "b"}));
    EXPECT_EQ(file.value("S", "00", "", 100), "z");
    EXPECT_EQ(file.value("S", "01", "", 100), "x");
    EXPECT_EQ(file.value("S", "4294967296", "none", 100), "none");
}

/// The lines of one section as a list that is searched from its beginning.
class PlainSection {
public:
    void set(const std::string& key, const std::string& value) {
        if (auto* const line = find(key)) {
            line->second = value;
        } else {
            lines_.emplace_back(key, value);
        }
    }
    void append(const std::string& key, const std::string& value) { lines_.emplace_back(key, value); }
    std::string value(const std::string& key) {
        const auto* const line = find(key);
        return line == nullptr ? "none" : line->second;
    }
    std::string text() const {
        std::string text = "[S]\r\n";
        for (const auto& [key, value] : lines_) {
            text.append(key).append("=").append(value).append("\r\n");
        }
        return text;
    }

private:
    using Line = std::pair<std::string, std::string>;

    Line* find(const std::string& key) {
        const auto found = std::ranges::find(lines_, key, &Line::first);
        return found == lines_.end() ? nullptr : &*found;
    }

    std::vector<Line> lines_;
};

class NumberedNames : public testing::Test {
protected:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
    /// Mostly the number that comes next.
    std::string key(unsigned next) {
        const unsigned choice = below(20);
        if (choice == 0) {
            return "name";
        }
        return choice == 1 ? "0" + std::to_string(below(8)) : std::to_string(choice < 4 ? below(8) : next);
    }
    void compare(const ProfileFile& file, PlainSection& section) {
        std::vector<std::string> list;
        for (unsigned number = 0; section.value(std::to_string(number)) != "none"; ++number) {
            list.push_back(section.value(std::to_string(number)));
        }
        const Texts values = file.numberedValues("S", 100, 100);
        ASSERT_EQ(std::vector<std::string>(values.begin(), values.end()), list) << section.text();
        for (const char* const name : {"0", "1", "2", "5", "9", "00", "07", "name"}) {
            ASSERT_EQ(file.value("S", name, "none", 100), section.value(name)) << section.text();
        }
        ASSERT_EQ(file.text(), section.text());
    }

    const unsigned seed = std::random_device{}();
    std::mt19937 random{seed};
};

TEST_F(NumberedNames, AreFoundAsInAListThatIsSearchedFromItsBeginning) {
    std::cout << "seed " << seed << '\n';
    for (int round = 0; round < 2000; ++round) {
        PlainSection section;
        for (unsigned line = 0, lines = below(9); line < lines; ++line) {
            section.append(key(line), std::to_string(line));
        }
        ProfileFile file = ProfileFile::parse(section.text());
        compare(file, section);
        for (unsigned edit = 0; edit < 8; ++edit) {
            const std::string name = key(edit);
            file.setValue("S", name, "set" + std::to_string(edit));
            section.set(name, "set" + std::to_string(edit));
            compare(file, section);
        }
        compare(ProfileFile::parse(file.text()), section);
    }
}

} // namespace
} // namespace varda
