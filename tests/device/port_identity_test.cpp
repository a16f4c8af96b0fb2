#include "device/port_identity.h"

#include "device/made_up_computer.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace varda {

using namespace device;
namespace {

class PortIdentity : public testing::Test, protected test::MadeUpComputer {
protected:
    std::string identityOf(const std::string& name) { return identityOfPort(name, root.string()); }
    std::string nameOf(const std::string& identity, const std::string& lastName) {
        return nameOfDevice(identity, lastName, root.string());
    }

    /// A pseudo-terminal, and a link that leads to it.
    void link(const std::string& name, const std::string& number) {
        writeFile("dev/pts/" + number, "");
        std::filesystem::remove(root / name);
        std::filesystem::create_symlink(root / "dev/pts" / number, root / name);
    }
};

TEST_F(PortIdentity, IsOfTheDeviceWhicheverNameLeadsThere) {
    plugIn("ttyUSB0", "1-2", "A10K");
    addStableName("usb-Maker-A10K", "ttyUSB0");
    const std::string identity = identityOf("/dev/ttyUSB0");
    EXPECT_NE(identity, "");
    EXPECT_EQ(identityOf("ttyUSB0"), identity);
    EXPECT_EQ(identityOf("/dev/serial/by-id/usb-Maker-A10K"), identity);
}

TEST_F(PortIdentity, FindsADeviceThatIsBackUnderAnotherNameAndInAnotherSocket) {
    plugIn("ttyUSB0", "1-2", "A10K");
    const std::string identity = identityOf("ttyUSB0");
    EXPECT_EQ(nameOf(identity, "ttyUSB0"), "ttyUSB0");
    unplug("ttyUSB0", "1-2");
    EXPECT_EQ(nameOf(identity, "ttyUSB0"), "");
    plugIn("ttyUSB3", "1-4", "A10K");
    EXPECT_EQ(nameOf(identity, "ttyUSB0"), "/dev/ttyUSB3");
}

TEST_F(PortIdentity, IsNotThatOfAnotherDeviceOfTheSameName) {
    plugIn("ttyUSB0", "1-2", "A10K");
    const std::string identity = identityOf("ttyUSB0");
    unplug("ttyUSB0", "1-2");
    plugIn("ttyUSB0", "1-2", "B20L");
    EXPECT_EQ(nameOf(identity, "ttyUSB0"), "");
}

TEST_F(PortIdentity, WithoutASerialNumberIsOfTheSocket) {
    plugIn("ttyUSB0", "1-2", "");
    plugIn("ttyUSB1", "1-3", "");
    const std::string identity = identityOf("ttyUSB0");
    EXPECT_NE(identity, identityOf("ttyUSB1"));
    unplug("ttyUSB0", "1-2");
    EXPECT_EQ(nameOf(identity, "ttyUSB0"), "") << "the one of the other socket is another";
    plugIn("ttyUSB2", "1-2", "");
    EXPECT_EQ(nameOf(identity, "ttyUSB0"), "/dev/ttyUSB2");
}

TEST_F(PortIdentity, IsNoneWhereTwoDevicesTellTheSame) {
    plugIn("ttyUSB0", "1-2", "0001");
    const std::string identity = identityOf("ttyUSB0");
    plugIn("ttyUSB1", "1-3", "0001");
    EXPECT_EQ(identityOf("ttyUSB0"), "");
    unplug("ttyUSB0", "1-2");
    plugIn("ttyUSB2", "1-4", "0001");
    EXPECT_EQ(nameOf(identity, "ttyUSB0"), "");
}

TEST_F(PortIdentity, TellsThePortsOfOneDeviceApart) {
    plugIn("ttyUSB0", "1-2", "A10K");
    const std::string usb = "sys/devices/pci0/usb1/1-2";
    addTerminal("ttyUSB1", usb + "/1-2:1.1/ttyUSB1");
    tell(usb + "/1-2:1.1/bInterfaceNumber", "01");
    addTerminal("ttyUSB2", usb + "/1-2:1.1/ttyUSB2");
    tell(usb + "/1-2:1.1/ttyUSB2/port_number", "1");
    const std::string second = identityOf("ttyUSB1");
    EXPECT_NE(second, "");
    EXPECT_NE(second, identityOf("ttyUSB0"));
    EXPECT_NE(second, identityOf("ttyUSB2"));
    EXPECT_EQ(nameOf(second, "ttyUSB0"), "/dev/ttyUSB1");
}

TEST_F(PortIdentity, IsNoneOfThePortsOfTheBoard) {
    addTerminal("ttyS0", "sys/devices/pnp0/00:01");
    EXPECT_EQ(identityOf("COM1"), "");
}

TEST_F(PortIdentity, OfAPseudoTerminalIsTheLinkThatLeadsThere) {
    link("line", "5");
    const std::string identity = identityOf("/line");
    EXPECT_EQ(identity, "link /line");
    std::filesystem::remove(root / "line");
    EXPECT_EQ(nameOf(identity, "/line"), "");
    link("line", "6");
    EXPECT_EQ(nameOf(identity, "/line"), "/line");
}

TEST_F(PortIdentity, OfAPseudoTerminalByItsNodeIsNone) {
    writeFile("dev/pts/5", "");
    EXPECT_EQ(identityOf("/dev/pts/5"), "");
    EXPECT_EQ(nameOf("", "/dev/pts/5"), "");
}

TEST_F(PortIdentity, OfALinkToWhatIsNoPseudoTerminalIsNone) {
    writeFile("dev/other", "");
    std::filesystem::create_symlink(root / "dev/other", root / "line");
    EXPECT_EQ(identityOf("/line"), "");
    std::filesystem::remove(root / "dev/other");
    EXPECT_EQ(identityOf("/line"), "");
}

} // namespace
} // namespace varda
