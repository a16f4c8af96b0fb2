#include "core/files/append_file.h"
#include "core/runs/monitor_line.h"
#include "core/runs/monitor_log.h"
#include "support/manual_clock.h"
#include "support/raises.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace varda::test {
namespace {

TEST(MonitorLineText, ShowsHexadecimalGroupsWithATrailingSpace) {
    EXPECT_EQ((MonitorLine{"", {0x01, 0x00, 0xA1}, false}.text()), "01 00 A1 ");
}

TEST(MonitorLineText, ShowsCharactersEachFollowedByASpace) {
    EXPECT_EQ((MonitorLine{"", {0x41, 0x42}, true}.text()), "A B ");
}

TEST(MonitorLineText, CharacterDisplayKeepsEveryByte) {
    Bytes all;
    std::string expected;
    for (int value = 0; value < 256; ++value) {
        all.push_back(static_cast<std::uint8_t>(value));
        expected += static_cast<char>(value);
        expected += ' ';
    }
    EXPECT_EQ((MonitorLine{"", all, true}.text()), expected);
}

TEST(MonitorLineText, StampHasNoLeadingZeros) {
    EXPECT_EQ(timeStamp({9, 5, 7}), "9:5:7 - ");
    EXPECT_EQ((MonitorLine{timeStamp({9, 5, 7}), {0x41}, false}.text()), "9:5:7 - 41 ");
}

TEST(MonitorLineText, CanBeCutForPainting) {
    EXPECT_EQ((MonitorLine{"", Bytes(5000, 0x41), false}.text(2)), "41 41 ");
}

TEST(MonitorLineText, LengthIsKnownWithoutTheText) {
    for (const bool asCharacters : {false, true}) {
        const MonitorLine line{"9:5:7 - ", Bytes(50, 0x41), asCharacters};
        for (const std::size_t most : {0U, 1U, 49U, 50U, 1000U}) {
            EXPECT_EQ(line.textLength(most), line.text(most).size());
        }
    }
}

TEST(MonitorLogFile, LinesAreAppendedToAnExistingFile) {
    TemporaryFolder folder;
    ManualClock clock;
    MonitorLog log(clock);
    for (const char* const line : {"first", "second"}) {
        log.open(folder.file("line.log"));
        EXPECT_TRUE(log.write(line));
        log.close();
        EXPECT_FALSE(log.isOpen());
    }
    EXPECT_EQ(bytesOf(folder.file("line.log")), std::string("first") + lineEnd + "second" + lineEnd);
}

TEST(MonitorLogFile, LineIsThereAtOnceForWhoeverReadsIt) {
    TemporaryFolder folder;
    ManualClock clock;
    MonitorLog log(clock);
    log.open(folder.file("line.log"));
    log.write("now");
    EXPECT_EQ(bytesOf(folder.file("line.log")), std::string("now") + lineEnd);
}

TEST(MonitorLogFile, NameMayHoldLettersThatAreNotAscii) {
    TemporaryFolder folder;
    ManualClock clock;
    MonitorLog log(clock);
    log.open(folder.file(notAscii));
    log.write("now");
    EXPECT_EQ(folder.names(), std::vector<std::string>{notAscii});
    EXPECT_EQ(bytesOf(folder.file(notAscii)), std::string("now") + lineEnd);
}

TEST(MonitorLogFile, DiskIsAskedForOnceASecondAndNotAfterTheEnd) {
    TemporaryFolder folder;
    ManualClock clock;
    MonitorLog log(clock);
    log.open(folder.file("line.log"));
    for (int line = 0; line < 20; ++line) {
        log.write("line");
    }
    EXPECT_EQ(clock.pending(), 1U);
    clock.advance(1000);
    EXPECT_EQ(clock.pending(), 0U);
    log.write("line");
    log.close();
    clock.advance(5000);
    EXPECT_EQ(clock.pending(), 0U);
}

TEST(MonitorLogFile, FolderThatIsNotThereIsError76) {
    TemporaryFolder folder;
    ManualClock clock;
    MonitorLog log(clock);
    EXPECT_EQ(numberRaisedBy([&] { log.open(folder.file("none/line.log")); }), 76);
    EXPECT_FALSE(log.isOpen());
    EXPECT_FALSE(log.write("lost"));
}

TEST(MonitorLogFile, PathThatIsNoRegularFileIsError75) {
    TemporaryFolder folder;
    ManualClock clock;
    MonitorLog log(clock);
    EXPECT_EQ(numberRaisedBy([&] { log.open(folder.path()); }), 75);
}

} // namespace
} // namespace varda::test
