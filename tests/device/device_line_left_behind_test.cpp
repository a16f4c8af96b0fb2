#include "device/device_line.h"
#include "device/line_opening.h"
#include "device/port_holders_posix.h"
#include "support/killed_program_posix.h"
#include "support/ordinary_user.h"
#include "support/pseudo_terminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <filesystem>

namespace varda::test {
namespace {

using namespace device;

constexpr const char* ifNothingHasIt =
    "If nothing has it open, a program was killed on it: end what made the "
    "line (socat) and start that anew.";

/// What the claim of a killed program leaves to be told of its lock file; empty where none could be made.
std::string toldOf(const KilledProgram& killed) {
    return ::access("/var/lock", W_OK) == 0 ? "The lock of process " + std::to_string(killed.process()) +
                                                  ", which has ended, was taken over."
                                            : "The claim of a program that was killed was taken over.";
}

/// Whether this process sees all others, and the driver lets it pass a claim.
bool isAdministrator(const KilledProgram& killed) {
    const int handle = ::open(killed.path().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (handle >= 0) {
        ::close(handle);
    }
    return handle >= 0 && PortHolders({}).sawAll();
}

TEST(DeviceLineLeftBehind, TakesWhatAKilledProgramLeftWhereItIsSeenThatNobodyHasIt) {
    const KilledProgram killed;
    ASSERT_TRUE(killed.hasClaimed());
    if (!isAdministrator(killed)) {
        GTEST_SKIP() << "notice: only the administrator passes the claim of a program";
    }
    DeviceLine line(killed.path(), ignoreTasks);
    ASSERT_FALSE(raisedBy([&line] { line.open({}); }));
    EXPECT_EQ(line.notice(), toldOf(killed));
    EXPECT_TRUE(fails(killed.path(), 8005, inUse(killed.path()))) << "it is this program's now";
    line.close();
    EXPECT_FALSE(openError(killed.path()));
}

TEST(DeviceLineLeftBehind, TellsOfAClaimWithoutALockFile) {
    const KilledProgram killed;
    std::filesystem::remove(lockFileOf(killed.path()));
    if (!isAdministrator(killed)) {
        GTEST_SKIP() << "notice: only the administrator passes the claim of a program";
    }
    DeviceLine line(killed.path(), ignoreTasks);
    ASSERT_FALSE(raisedBy([&line] { line.open({}); }));
    EXPECT_EQ(line.notice(), "The claim of a program that was killed was taken over.");
}

TEST(DeviceLineLeftBehind, SaysWhatHelpsWhereAKilledProgramsClaimIsNotToBePassed) {
    const OrdinaryUser user; // before the pseudo-terminal, which is this user's then
    const KilledProgram killed;
    ASSERT_TRUE(killed.hasClaimed());
    const auto error = openError(killed.path());
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), 8005);
    EXPECT_EQ(error->what(), inUse(killed.path()));
    const bool hasLock = ::access("/var/lock", W_OK) == 0;
    EXPECT_EQ(error->advice(), (hasLock ? toldOf(killed) + ' ' : std::string()) + ifNothingHasIt);
    const auto again = openError(killed.path());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->advice(), ifNothingHasIt);
}

TEST(DeviceLineLeftBehind, SaysNothingOfKilledProgramsWhereOneThatLivesIsSeen) {
    const PseudoTerminal terminal;
    ASSERT_EQ(::ioctl(terminal.nearEnd(), TIOCEXCL), 0);
    const auto error = openError(terminal.path());
    ASSERT_TRUE(error);
    EXPECT_EQ(error->advice(), "");
}

} // namespace
} // namespace varda::test
