#include "core/runs/file_kind.h"

#include "core/files/profile_file.h"

#include <gtest/gtest.h>

namespace varda {
namespace {

FileKind kindOfText(const char* text) { return kindOf(ProfileFile::parse(text)); }

TEST(FileKind, IsToldByTheFirstEntry) {
    EXPECT_EQ(kindOfText("[Information]\r\nTotal=1\r\n[Receive]\r\n0=FFFF\r\n[Send]\r\n0=FFFF\r\n"),
              FileKind::Packets);
    EXPECT_EQ(kindOfText("[Information]\nTotal=1\n[Scenario]\nScenario0=FF FF \n"), FileKind::Scenario);
}

TEST(FileKind, IsNeitherWhereThereIsNoFirstEntry) {
    for (const char* const text : {"", "[Information]\nTotal=0\n", "[Receive]\n1=FFFF\n",
                                   "[Scenario]\n0=FF\n", "[Receive]\n0=\n", "Receive\n0=FFFF\n"}) {
        EXPECT_EQ(kindOfText(text), FileKind::Neither) << text;
    }
}

TEST(FileKind, OfTheExampleFilesIsTheirOwn) {
    const std::string folder = VARDA_DATA_FOLDER;
    EXPECT_EQ(kindOf(ProfileFile::load(folder + "/example-reads.ini")), FileKind::Packets);
    EXPECT_EQ(kindOf(ProfileFile::load(folder + "/example-writes.ini")), FileKind::Packets);
    EXPECT_EQ(kindOf(ProfileFile::load(folder + "/example.scn")), FileKind::Scenario);
}

} // namespace
} // namespace varda
