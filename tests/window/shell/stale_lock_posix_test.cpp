#include "core/base/scope_exit.h"
#include "device/lock_file.h"
#include "support/dead_process.h"
#include "support/killed_program_posix.h"
#include "support/ordinary_user.h"
#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QLabel>

#include <filesystem>

namespace varda::test {
namespace {

constexpr const char* ifNothingHasIt =
    "If nothing has it open, a program was killed on it: end what made the "
    "line (socat) and start that anew.";

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
    if (!isThere()) {
        GTEST_SKIP() << "notice: no lock file can be made here";
    }
    paste("cbPort", line.path());
    driver.click("cmdCommTest");
    EXPECT_EQ(notice(), told);
    driver.click("cmdCommTest");
    EXPECT_EQ(notice(), "");
}

/// What really stays of a program that was killed: its claim on the line as well as its lock file.
class KilledProgramTest : public WindowTest {
protected:
    std::string notice() { return driver.find<QLabel>("slowLine")->text().toStdString(); }
};

TEST_F(KilledProgramTest, LeavesALineThatIsTakenOverOrSaysWhatHelps) {
    const KilledProgram killed;
    ASSERT_TRUE(killed.hasClaimed());
    driver.openPort(killed.path());
    if (driver.box() != nullptr) { // the driver lets the administrator alone pass
        EXPECT_EQ(driver.boxText(), "Already Using Port !! Please Select Another Port");
        EXPECT_TRUE(driver.box()->informativeText().endsWith(QLatin1String(ifNothingHasIt)));
        return;
    }
    EXPECT_EQ(text("cmdPortOpen"), "Close Port");
    EXPECT_TRUE(notice().ends_with(" was taken over.")) << notice();
}

TEST_F(KilledProgramTest, LeavesALineThatAnOrdinaryUserIsToldHowToGetBack) {
    const OrdinaryUser user; // before the pseudo-terminal, which is this user's then
    const KilledProgram killed;
    ASSERT_TRUE(killed.hasClaimed());
    for (int time = 0; time < 2; ++time) { // the lock file is gone at the second
        paste("cbPort", killed.path());
        driver.click("cmdCommTest");
        ASSERT_NE(driver.box(), nullptr);
        EXPECT_EQ(driver.boxText(), "Already Using Port !! Please Select Another Port");
        EXPECT_EQ(driver.boxTitle(), "Error");
        EXPECT_TRUE(driver.box()->informativeText().endsWith(QLatin1String(ifNothingHasIt)))
            << driver.box()->informativeText().toStdString();
        driver.closeBox();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace
} // namespace varda::test
