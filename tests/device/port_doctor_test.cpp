#include "device/port_doctor.h"

#include "device/device_line.h"
#include "device/made_up_computer.h"
#include "support/ordinary_user.h"
#include "support/pseudo_terminal.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace varda {

using namespace device;
namespace {

using Texts = std::vector<std::string>;

constexpr const char* ifInUseAllTheSame =
    "If Test finds it in use all the same, a program was killed on it: end "
    "what made the line (socat) and start that anew.";

class PortDoctorTest : public testing::Test, protected test::MadeUpComputer {
protected:
    PortDoctorTest() { plugIn("ttyUSB0", "1-2", "A10K"); }

    std::vector<PortFindings> examine(const std::string& chosen = {}) {
        return examinePorts(chosen, root.string());
    }

    static bool tells(const PortFindings& findings, const std::string& fact) {
        return std::ranges::find(findings.facts, fact) != findings.facts.end();
    }

    bool tells(const std::string& fact) { return tells(examine().at(0), fact); }

    Texts commands() {
        Texts texts;
        const PortFindings findings = examine().at(0);
        for (const PortRemedy& remedy : findings.remedies) {
            texts.push_back(remedy.command);
        }
        return texts;
    }
};

TEST_F(PortDoctorTest, LooksAtEveryPort) {
    plugIn("ttyACM0", "1-3", "");
    const auto findings = examine();
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(describe(findings[0].port), "/dev/ttyACM0 - USB Serial, Maker");
    EXPECT_EQ(describe(findings[1].port), "/dev/ttyUSB0 - USB Serial, Maker (serial number A10K)");
}

TEST_F(PortDoctorTest, TellsThatAllIsWell) {
    const auto findings = examine().at(0);
    EXPECT_EQ(findings.facts, (Texts{"No program has it open.", "You may use it."}));
    EXPECT_TRUE(findings.remedies.empty());
}

TEST_F(PortDoctorTest, TellsTheNameThatStays) {
    addStableName("usb-Maker-A10K", "ttyUSB0");
    EXPECT_TRUE(tells("Its name that stays: /dev/serial/by-id/usb-Maker-A10K"));
}

TEST_F(PortDoctorTest, NamesEveryProgramThatHasThePort) {
    runProgram(1234, "minicom", "/dev/ttyUSB0");
    runProgram(77, "cu", "/dev/ttyUSB0");
    runProgram(78, "other", "/dev/ttyUSB1");
    EXPECT_TRUE(tells("cu (process 77) has it open."));
    EXPECT_TRUE(tells("minicom (process 1234) has it open."));
    EXPECT_EQ(commands(), (Texts{"kill 77", "kill 1234"}));
}

TEST_F(PortDoctorTest, NamesAProgramOnceThatHasThePortOpenTwice) {
    runProgram(1234, "minicom", "/dev/ttyUSB0");
    std::filesystem::create_symlink("/dev/ttyUSB0", root / "proc/1234/fd/4");
    EXPECT_EQ(commands(), Texts{"kill 1234"});
}

TEST_F(PortDoctorTest, KnowsTheServicesThatTakePorts) {
    runProgram(5, "ModemManager", "/dev/ttyUSB0");
    runProgram(6, "brltty", "/dev/ttyUSB0");
    EXPECT_EQ(commands(), (Texts{"sudo systemctl stop ModemManager", "sudo apt remove brltty"}));
}

TEST_F(PortDoctorTest, EndsNotThisProgram) {
    runProgram(::getpid(), "varda", "/dev/ttyUSB0");
    EXPECT_TRUE(tells("This program has it open."));
    EXPECT_TRUE(commands().empty());
}

TEST_F(PortDoctorTest, SaysWhatItCannotSee) {
    runProgram(1234, "minicom", "/dev/ttyUSB0");
    std::filesystem::permissions(root / "proc/1234/fd", std::filesystem::perms(0));
    PortFindings found;
    {
        const test::OrdinaryUser user;
        found = examine().at(0);
    }
    std::filesystem::permissions(root / "proc/1234/fd", std::filesystem::perms(0755));
    EXPECT_TRUE(tells(found, "No program of yours has it open."));
    ASSERT_EQ(found.remedies.size(), 1U);
    EXPECT_EQ(found.remedies[0].command, "sudo lsof /dev/ttyUSB0");
}

TEST_F(PortDoctorTest, ReadsLockFiles) {
    runProgram(1234, "minicom");
    writeFile("var/lock/LCK..ttyUSB0", "      1234\n");
    EXPECT_TRUE(tells("The lock file /var/lock/LCK..ttyUSB0 is of minicom (process 1234)."));
    std::filesystem::remove_all(root / "proc/1234");
    EXPECT_TRUE(tells("The lock file /var/lock/LCK..ttyUSB0 is left over from process 1234, which has ended. "
                      "Test takes it over."));
    writeFile("var/lock/LCK..ttyUSB0", "nobody\n");
    EXPECT_TRUE(tells("The lock file /var/lock/LCK..ttyUSB0 names no process that could be read."));
}

TEST_F(PortDoctorTest, TellsOfALockFileOnceThoughTwoFoldersLeadThere) {
    writeFile("run/lock/LCK..ttyUSB0", "1234\n");
    std::filesystem::create_directories(root / "var");
    std::filesystem::create_directory_symlink(root / "run/lock", root / "var/lock");
    const auto facts = examine().at(0).facts;
    EXPECT_EQ(std::ranges::count_if(facts, [](const auto& fact) { return fact.starts_with("The lock"); }), 1);
}

TEST_F(PortDoctorTest, NamesTheGroupThatIsMissingAndHowToJoinIt) {
    const group* const dialout = ::getgrnam("dialout");
    const std::string node = (root / "dev/ttyUSB0").string();
    if (dialout == nullptr || ::chown(node.c_str(), 0, dialout->gr_gid) != 0) {
        GTEST_SKIP() << "only the administrator can give a node to a group";
    }
    ASSERT_EQ(::chmod(node.c_str(), 0660), 0);
    const test::OrdinaryUser user;
    EXPECT_TRUE(tells("You may not use it: you are not in the group \"dialout\"."));
    EXPECT_EQ(commands(), Texts{"sudo usermod -aG dialout nobody"});
}

TEST_F(PortDoctorTest, SendsToTheAdministratorWhereTheGroupWouldNotHelp) {
    const std::string node = (root / "dev/ttyUSB0").string();
    ASSERT_EQ(::chmod(node.c_str(), 0), 0);
    struct stat found {};
    ASSERT_EQ(::stat(node.c_str(), &found), 0);
    const group* const owner = ::getgrgid(found.st_gid);
    ASSERT_NE(owner, nullptr);
    const std::string name = owner->gr_name;
    const test::OrdinaryUser user;
    EXPECT_TRUE(tells("You may not use it, and neither may its group, \"" + name +
                      "\". Ask the administrator for access."));
}

TEST_F(PortDoctorTest, TellsTheLatencyTimerAndHowToShortenIt) {
    const std::string device = "sys/devices/pci0/usb1/1-2/1-2:1.0/ttyUSB0";
    tell(device + "/latency_timer", "16");
    EXPECT_TRUE(tells("Its latency timer is 16 ms: an answer may come that much later."));
    EXPECT_EQ(commands(), Texts{"echo 1 | sudo tee /sys/class/tty/ttyUSB0/device/latency_timer"});
    tell(device + "/latency_timer", "1");
    EXPECT_TRUE(tells("Its latency timer is 1 ms: an answer may come that much later."));
    EXPECT_TRUE(commands().empty());
}

TEST_F(PortDoctorTest, TellsOfAPortThatTheSystemWritesTo) {
    tell("sys/class/tty/console/active", "tty0 ttyUSB0");
    EXPECT_TRUE(tells("The system writes messages of its own to it (console=ttyUSB0 at its start)."));
    tell("sys/class/tty/console/active", "tty0 ttyUSB01");
    EXPECT_EQ(examine().at(0).facts.size(), 2U);
}

TEST_F(PortDoctorTest, LooksAtTheChosenPortFirst) {
    plugIn("ttyACM0", "1-3", "");
    const auto findings = examine(" ttyUSB0 ");
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].port.node, "/dev/ttyUSB0");
}

TEST_F(PortDoctorTest, LooksAtTheChosenPortAlsoWhereItIsNone) {
    const auto findings = examine("com1");
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].port.node, "/dev/com1");
    EXPECT_EQ(findings[0].facts, Texts{"There is no such device. Did you mean COM1, in capitals?"});
    EXPECT_EQ(examine("ttyUSB7").at(0).facts, Texts{"There is no such device."});
}

TEST_F(PortDoctorTest, KnowsThePortsThatTheBoardHasNot) {
    const auto terminal = addTerminal("ttyS0", "sys/devices/platform/serial8250");
    test::writeBytes((terminal / "type").string(), "0\n");
    EXPECT_EQ(examine("COM1").at(0).facts, Texts{"The name is there, but this computer has no such port."});
}

TEST_F(PortDoctorTest, DoesWithoutAPortThatIsNone) {
    EXPECT_EQ(examine("").size(), 1U);
    EXPECT_EQ(examine("VIRTUAL").size(), 1U);
}

TEST_F(PortDoctorTest, LooksForLockFilesByTheNameOfTheChosenPortAlone) {
    plugIn("ttyACM0", "1-3", "");
    std::filesystem::create_symlink("ttyUSB0", root / "dev/modem");
    writeFile("var/lock/LCK..modem", "1234\n");
    const auto findings = examine("modem");
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].facts.size(), 3U);
    EXPECT_EQ(findings[1].facts.size(), 2U);
}

TEST_F(PortDoctorTest, ReportsAllOfItAsAText) {
    runProgram(1234, "minicom", "/dev/ttyUSB0");
    EXPECT_EQ(reportOf(examine()), "/dev/ttyUSB0 - USB Serial, Maker (serial number A10K)\n"
                                   "  minicom (process 1234) has it open.\n"
                                   "  You may use it.\n"
                                   "  Ends minicom (process 1234):\n"
                                   "    kill 1234\n");
    EXPECT_EQ(reportOf({}), "No serial port is there. Plug the adapter in, and look again.\n");
}

TEST(PortDoctor, SeesThatThisProgramHasAPseudoTerminal) {
    const test::PseudoTerminal terminal;
    DeviceLine line(terminal.path(), [](const std::function<void()>& /*task*/) {});
    line.open({});
    const auto findings = examinePorts(terminal.path());
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings[0].port.node, terminal.path());
    EXPECT_EQ(std::ranges::count(findings[0].facts, "This program has it open."), 1);
}

TEST_F(PortDoctorTest, SaysWhatHelpsWhereAKilledProgramsClaimMayBeLeft) {
    writeFile("dev/pts/5", "");
    const auto free = examine("/dev/pts/5").at(0);
    EXPECT_TRUE(tells(free, "No program has it open."));
    EXPECT_TRUE(tells(free, ifInUseAllTheSame));
    EXPECT_FALSE(tells(ifInUseAllTheSame)) << "other ports keep no claim";
    runMaker(77, "socat", "5");
    const auto made = examine("/dev/pts/5").at(0);
    EXPECT_TRUE(tells(made, "No program has it open."));
    EXPECT_TRUE(tells(made, ifInUseAllTheSame));
    EXPECT_TRUE(tells(made, "socat (process 77) made the line."));
    ASSERT_EQ(made.remedies.size(), 1U);
    EXPECT_EQ(made.remedies[0].command, "kill 77");
    runProgram(1234, "minicom", "/dev/pts/5");
    EXPECT_TRUE(tells(examine("/dev/pts/5").at(0), "minicom (process 1234) has it open."));
    EXPECT_FALSE(tells(examine("/dev/pts/5").at(0), ifInUseAllTheSame));
}

TEST(PortDoctor, TellsWhatAConsoleIs) {
    const auto findings = examinePorts("/dev/tty");
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings[0].facts, Texts{"It is a console, not a serial port."});
}

} // namespace
} // namespace varda
