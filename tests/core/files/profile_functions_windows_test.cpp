#include "core/files/file_path.h"
#include "core/files/profile_file.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <array>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace varda {
namespace {

using test::TemporaryFolder;

/// The functions of the system's that such files are written for.
class SystemProfile {
public:
    explicit SystemProfile(const std::string& path) : path_(filePath(path).make_preferred().string()) {}

    void set(const std::string& section, const std::string& key, const std::string& value) const {
        ASSERT_NE(::WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(), path_.c_str()), 0)
            << ::GetLastError();
    }

    std::string get(const std::string& section, const std::string& key) const {
        std::array<char, size> value{};
        const DWORD length = ::GetPrivateProfileStringA(section.c_str(), key.c_str(), missing, value.data(),
                                                        static_cast<DWORD>(value.size()), path_.c_str());
        return {value.data(), length};
    }

    /// The system may keep what it has read or written of the last file.
    void forget() const { ::WritePrivateProfileStringA(nullptr, nullptr, nullptr, path_.c_str()); }

    static constexpr const char* missing = "<missing>";
    static constexpr DWORD size = 1024;

private:
    std::string path_;
};

struct Value {
    std::string section;
    std::string key;
    std::string text;
};

/// Packet files and scenario files as the program has them, and files of anybody's: few names, so that many
/// come again.
class Draws {
public:
    explicit Draws(std::uint32_t seed) : random_(seed) {}

    std::size_t below(std::size_t limit) { return random_() % limit; }

    Value value() {
        switch (below(3)) {
        case 0:
            return {"Information", "Total", std::to_string(below(1000))};
        case 1:
            return {below(2) == 0 ? "Receive" : "Send", std::to_string(below(40)), frame()};
        default:
            return {"section " + std::to_string(below(3)), "Key " + std::to_string(below(9)), anyText()};
        }
    }

private:
    std::string frame() {
        static constexpr std::string_view digits = "0123456789ABCDEF";
        std::string text;
        for (std::size_t pairs = below(300); pairs > 0; --pairs) {
            text += {digits[below(16)], digits[below(16)]};
        }
        return text;
    }

    std::string anyText() {
        static constexpr std::string_view letters = " \t=;[]'\"0AFgz.,\\/%";
        std::string text(below(24), ' ');
        for (char& letter : text) {
            letter = letters[below(letters.size())];
        }
        return text;
    }

    std::mt19937 random_;
};

constexpr int files = 1000;

class ProfileFunctions : public testing::Test {
protected:
    ProfileFunctions() { std::cout << "seed " << seed << '\n'; }

    /// Both see the same behind every name that was drawn.
    void expectSeenAlike(const std::string& path, const std::vector<Value>& drawn) const {
        const SystemProfile system(path);
        const ProfileFile ours = ProfileFile::load(path);
        ASSERT_FALSE(ours.problem()) << path;
        for (const Value& value : drawn) {
            ASSERT_EQ(system.get(value.section, value.key),
                      ours.value(value.section, value.key, SystemProfile::missing, SystemProfile::size))
                << '[' << value.section << "] " << value.key << '=' << value.text << "\n"
                << test::bytesOf(path);
        }
    }

    const std::uint32_t seed = std::random_device{}();
    Draws draws{seed};
    TemporaryFolder folder;
};

TEST_F(ProfileFunctions, ReadWhatWeWrite) {
    for (int file = 0; file < files && !HasFailure(); ++file) {
        const std::string path = folder.file(std::to_string(file) + ".ini");
        std::vector<Value> drawn;
        ProfileFile ours;
        for (std::size_t count = 1 + draws.below(60); count > 0; --count) {
            drawn.push_back(draws.value());
            ours.setValue(drawn.back().section, drawn.back().key, drawn.back().text);
        }
        ours.save(path);
        expectSeenAlike(path, drawn);
    }
}

TEST_F(ProfileFunctions, WriteWhatWeRead) {
    for (int file = 0; file < files && !HasFailure(); ++file) {
        const std::string path = folder.file(std::to_string(file) + ".ini");
        std::vector<Value> drawn;
        const SystemProfile system(path);
        for (std::size_t count = 1 + draws.below(60); count > 0; --count) {
            drawn.push_back(draws.value());
            system.set(drawn.back().section, drawn.back().key, drawn.back().text);
        }
        system.forget();
        expectSeenAlike(path, drawn);
    }
}

TEST_F(ProfileFunctions, AndWeChangeAFileByTurns) {
    for (int file = 0; file < files / 10 && !HasFailure(); ++file) {
        const std::string path = folder.file(std::to_string(file) + ".ini");
        const SystemProfile system(path);
        std::vector<Value> drawn;
        for (int turn = 0; turn < 6 && !HasFailure(); ++turn) {
            ProfileFile ours = ProfileFile::load(path);
            for (std::size_t count = 1 + draws.below(10); count > 0; --count) {
                drawn.push_back(draws.value());
                const Value& value = drawn.back();
                if (turn % 2 == 0) {
                    ours.setValue(value.section, value.key, value.text);
                } else {
                    system.set(value.section, value.key, value.text);
                }
            }
            if (turn % 2 == 0) {
                ours.save(path);
            }
            system.forget();
            expectSeenAlike(path, drawn);
        }
    }
}

} // namespace
} // namespace varda
