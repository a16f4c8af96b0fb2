#include "core/base/scope_exit.h"
#include "device/lock_file.h"
#include "support/dead_process.h"
#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QLabel>

#include <filesystem>

namespace varda::test {
namespace {

class StaleLockTest : public WindowTest {
protected:
    StaleLockTest() {
        std::string name = line.path().substr(std::string("/dev/").size());
        std::ranges::replace(name, '/', '_');
        lock_ = device::LockFile::usualFolders().front() + "/LCK.." + name;
        writeBytes(lock_, std::to_string(dead) + "\n");
    }
    void TearDown() override {
        std::error_code ignored;
        std::filesystem::remove(lock_, ignored);
    }

    /// Not where this system has no folder for such files, or lets nobody write there.
    bool isThere() const { return !bytesOf(lock_).empty(); }
    std::string notice() { return driver.find<QLabel>("slowLine")->text().toStdString(); }

    const int dead = deadProcess();
    const std::string told =
        "The lock of process " + std::to_string(dead) + ", which has ended, was taken over.";

private:
    std::string lock_;
};

TEST_F(StaleLockTest, IsToldByTheTestAndStaysUntilThePortIsClosed) {
    if (!isThere()) {
        GTEST_SKIP() << "notice: no lock file can be made here";
    }
    EXPECT_EQ(notice(), "");
    paste("cbPort", line.path());
    driver.click("cmdCommTest");
    EXPECT_EQ(notice(), told);
    EXPECT_EQ(driver.find<QLabel>("slowLine")->toolTip().toStdString(), told) << "where there is no room";
    EXPECT_EQ(driver.box(), nullptr);
    driver.click("cmdPortOpen");
    EXPECT_EQ(text("cmdPortOpen"), "Close Port");
    EXPECT_EQ(notice(), told);
    driver.click("cmdPortOpen");
    EXPECT_EQ(notice(), "");
}

TEST_F(StaleLockTest, IsToldWhenADeviceIsAttachedAgain) {
    if (!isThere()) {
        GTEST_SKIP() << "notice: no lock file can be made here";
    }
    const TemporaryFolder folder;
    const std::string link = folder.file("adapter");
    auto first = std::make_unique<PseudoTerminal>();
    std::filesystem::create_symlink(first->path(), link);
    driver.click("attachAgain");
    driver.openPort(link);
    EXPECT_EQ(notice(), "") << "the lock is of another port";
    std::filesystem::remove(link);
    first->closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    driver.closeBox();
    std::filesystem::create_symlink(line.path(), link);
    EXPECT_TRUE(runUntil([this] { return text("cmdPortOpen") == "Close Port"; }));
    EXPECT_EQ(notice(), told);
}

TEST_F(StaleLockTest, IsToldNoMoreOnceTheLineHasGoneAway) {
    if (!isThere()) {
        GTEST_SKIP() << "notice: no lock file can be made here";
    }
    driver.openPort(line.path());
    EXPECT_EQ(notice(), told);
    line.closeFarEnd();
    EXPECT_TRUE(runUntil([this] { return driver.box() != nullptr; }));
    EXPECT_EQ(notice(), "");
}

TEST_F(StaleLockTest, IsToldOnce) {
    paste("cbPort", line.path());
    driver.click("cmdCommTest");
    driver.click("cmdCommTest");
    EXPECT_EQ(notice(), "");
}

} // namespace
} // namespace varda::test
