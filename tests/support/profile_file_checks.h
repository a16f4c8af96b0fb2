#pragma once

#include "core/files/profile_file.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace varda::test {

inline const std::string oldContent = "[Information]\r\nTotal=3\r\n";
inline const std::string newContent = "[Information]\r\nTotal=4\r\n";

/// What is saved as newContent.
inline ProfileFile newFile() {
    ProfileFile file;
    file.setValue("Information", "Total", "4");
    return file;
}

/// A profile file in a folder of its own.
class ProfileFileTest : public testing::Test {
protected:
    TemporaryFolder folder_;
    std::string path_ = folder_.file("table.ini");
};

inline std::string totalOf(const ProfileFile& file) {
    return file.value("Information", "Total", "missing", 1024);
}

/// The error has that number, names the file and the reason, and says what helps.
inline void expectNames(const RuntimeError& error, const std::string& path, int number,
                        const std::string& reason) {
    const std::string text = error.what();
    EXPECT_EQ(error.number(), number) << text;
    EXPECT_NE(text.find('"' + path + '"'), std::string::npos) << text;
    EXPECT_NE(text.find(reason), std::string::npos) << text;
    EXPECT_NE(error.advice(), "") << text;
}

inline void expectRefused(const ProfileFile& file, const std::string& path, int number,
                          const std::string& reason) {
    try {
        file.save(path);
        ADD_FAILURE() << path << " was saved";
    } catch (const RuntimeError& error) {
        expectNames(error, path, number, reason);
    }
}

/// A file that cannot be read is empty, says why, and is not written over.
inline void expectUnreadable(const std::string& path, int number, const std::string& reason) {
    ProfileFile file = ProfileFile::load(path);
    EXPECT_EQ(totalOf(file), "missing");
    ASSERT_TRUE(file.problem().has_value());
    expectNames(*file.problem(), path, number, reason);
    file.setValue("Information", "Total", "0");
    expectRefused(file, path, number, reason);
}

} // namespace varda::test
