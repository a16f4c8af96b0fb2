#include "device/port_names.h"

#include "device/made_up_computer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

namespace varda {

using namespace device;
using test::MadeUpComputer;
namespace {

TEST(PortNames, AreDevicesThatAreReallyThereInOrder) {
    const auto ports = portNames();
    std::string last;
    for (const PortName& port : ports) {
        struct stat found {};
        EXPECT_EQ(::stat(port.node.c_str(), &found), 0) << port.node;
        EXPECT_TRUE(S_ISCHR(found.st_mode)) << port.node;
        EXPECT_LT(last, port.node);
        last = port.node;
    }
}

class MadeUpPorts : public testing::Test, protected MadeUpComputer {};

TEST_F(MadeUpPorts, AreNamedWithAllThatTheirDevicesTell) {
    const std::string usb = "sys/devices/pci0/usb1/1-2";
    addTerminal("ttyUSB0", usb + "/1-2:1.0/ttyUSB0");
    tell(usb + "/idVendor", "0403");
    tell(usb + "/product", "USB Serial");
    tell(usb + "/manufacturer", "Maker");
    tell(usb + "/serial", "A10K");
    addStableName("usb-Maker_USB_Serial_A10K-if00-port0", "ttyUSB0");
    const auto ports = portNames(root.string());
    ASSERT_EQ(ports.size(), 1U);
    EXPECT_EQ(ports[0].node, "/dev/ttyUSB0");
    EXPECT_EQ(ports[0].description, "USB Serial");
    EXPECT_EQ(ports[0].maker, "Maker");
    EXPECT_EQ(ports[0].serialNumber, "A10K");
    EXPECT_EQ(ports[0].stableName, "/dev/serial/by-id/usb-Maker_USB_Serial_A10K-if00-port0");
}

TEST_F(MadeUpPorts, OfTheBoardAreThoseThatItReallyHas) {
    const auto first = addTerminal("ttyS0", "sys/devices/pnp0/00:01");
    const auto second = addTerminal("ttyS1", "sys/devices/platform/serial8250");
    test::writeBytes((first / "type").string(), "4\n");
    test::writeBytes((second / "type").string(), "0\n");
    const auto ports = portNames(root.string());
    ASSERT_EQ(ports.size(), 1U);
    EXPECT_EQ(describe(ports[0]), "/dev/ttyS0");
    EXPECT_EQ(ports[0].stableName, "");
}

TEST_F(MadeUpPorts, AreNeitherConsolesNorPortsWithoutANode) {
    std::filesystem::create_directories(root / "sys/class/tty/tty1");
    addTerminal("ttyUSB1", "sys/devices/usb1/1-3");
    std::filesystem::remove(root / "dev/ttyUSB1");
    EXPECT_TRUE(portNames(root.string()).empty());
}

TEST_F(MadeUpPorts, StandInOrder) {
    addTerminal("ttyUSB1", "sys/devices/usb1/1-3");
    addTerminal("ttyACM0", "sys/devices/usb1/1-4");
    addTerminal("ttyUSB0", "sys/devices/usb1/1-5");
    std::string nodes;
    for (const PortName& port : portNames(root.string())) {
        nodes += port.node + ' ';
    }
    EXPECT_EQ(nodes, "/dev/ttyACM0 /dev/ttyUSB0 /dev/ttyUSB1 ");
}

TEST_F(MadeUpPorts, AreNoneWhereTheSystemShowsNone) { EXPECT_TRUE(portNames(root.string()).empty()); }

TEST(DescriptionOfAPort, NamesWhatIsKnownOfTheDevice) {
    const std::string node = "/dev/ttyUSB0";
    EXPECT_EQ(describe({node, {}, {}}), "/dev/ttyUSB0");
    EXPECT_EQ(describe({node, "USB Serial", {}}), "/dev/ttyUSB0 - USB Serial");
    EXPECT_EQ(describe({node, {}, "A10K"}), "/dev/ttyUSB0 (serial number A10K)");
    EXPECT_EQ(describe({node, "USB Serial", "A10K"}), "/dev/ttyUSB0 - USB Serial (serial number A10K)");
}

} // namespace
} // namespace varda
