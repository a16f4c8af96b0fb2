#include "core/files/file_path.h"
#include "core/files/profile_file.h"

#include "support/profile_file_checks.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace varda {
namespace {

using test::bytesOf;
using test::expectRefused;
using test::expectUnreadable;
using test::newFile;
using test::oldContent;
using test::writeBytes;

namespace fs = std::filesystem;

class ProfileFileWindows : public test::ProfileFileTest {
protected:
    void expectUntouched() const {
        EXPECT_EQ(bytesOf(path_), oldContent);
        EXPECT_EQ(folder_.entries(), 1);
    }
};

TEST_F(ProfileFileWindows, BothSlashesSeparateFolders) {
    fs::create_directory(filePath(folder_.file("data")));
    newFile().save(folder_.path() + "\\data\\table.ini");
    EXPECT_EQ(test::totalOf(ProfileFile::load(folder_.file("data/table.ini"))), "4");
}

TEST_F(ProfileFileWindows, DevicesAreUnreadableByTheirNamesAndNotSavedTo) {
    for (const char* const device : {"NUL", "nul", "CON", "COM1", "COM1:", R"(\\.\COM1)"}) {
        expectUnreadable(device, 75, "is no regular file");
        expectRefused(newFile(), device, 75, "is no regular file");
    }
}

TEST_F(ProfileFileWindows, AReadOnlyFileIsNotReplaced) {
    writeBytes(path_, oldContent);
    fs::permissions(filePath(path_), fs::perms::owner_read);
    expectRefused(newFile(), path_, 70, "permission denied");
    expectUntouched();
    fs::permissions(filePath(path_), fs::perms::owner_all);
    newFile().save(path_);
    EXPECT_EQ(test::totalOf(ProfileFile::load(path_)), "4");
}

TEST_F(ProfileFileWindows, AFileThatIsOpenElsewhereIsNotReplaced) {
    writeBytes(path_, oldContent);
    {
        const std::ifstream reader(filePath(path_));
        expectRefused(newFile(), path_, 70, "permission denied");
    }
    expectUntouched();
}

TEST_F(ProfileFileWindows, WhatAKilledSaveLeftIsRemovedAndWhatALivingWriterHasOpenStays) {
    const std::string left = folder_.file(".varda-17.tmp");
    writeBytes(left, "half");
    {
        const std::ofstream writer(filePath(left), std::ios::app);
        newFile().save(path_);
        EXPECT_TRUE(fs::exists(filePath(left)));
    }
    newFile().save(path_);
    EXPECT_EQ(folder_.entries(), 1);
}

TEST_F(ProfileFileWindows, IsWrittenInPlace) {
    ProfileFile longer = newFile();
    longer.setValue("S", "k", std::string(10'000, 'F'));
    writeBytes(path_, oldContent);
    for (const ProfileFile& file : {longer, newFile()}) {
        file.saveInPlace(path_);
        EXPECT_EQ(test::bytesOf(path_), file.text());
    }
}

TEST_F(ProfileFileWindows, NamesThatCannotBeAreRefusedAndLeaveNothingBehind) {
    expectRefused(newFile(), folder_.file("what?.ini"), 76, "path not found");
    expectRefused(newFile(), folder_.file("a|b.ini"), 76, "path not found");
    EXPECT_THROW(newFile().save(folder_.file(std::string(300, 'x'))), RuntimeError);
    EXPECT_EQ(folder_.entries(), 0);
}

TEST_F(ProfileFileWindows, ANameThatIsNoUtf8IsUnreadableAndNotSavedTo) {
    const std::string name = folder_.file("table-\xE4\xFF.ini");
    expectUnreadable(name, 75, "could not be read");
    expectRefused(newFile(), name, 75, "could not be saved");
    EXPECT_EQ(folder_.entries(), 0);
}

} // namespace
} // namespace varda
