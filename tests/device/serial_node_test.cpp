#include "device/serial_node.h"

#include <gtest/gtest.h>

#ifdef __linux__

namespace varda {

using namespace device;
namespace {

TEST(DeviceNode, OfComNumberIsTheSerialNodeOfOneLess) {
    EXPECT_EQ(deviceNode("COM1"), "/dev/ttyS0");
    EXPECT_EQ(deviceNode("COM10"), "/dev/ttyS9");
    EXPECT_EQ(deviceNode("COM20"), "/dev/ttyS19");
    EXPECT_EQ(deviceNode("COM256"), "/dev/ttyS255");
}

TEST(DeviceNode, OfComWithoutANumberFromOneOnIsAPlainName) {
    EXPECT_EQ(deviceNode("COM"), "/dev/COM");
    EXPECT_EQ(deviceNode("COM0"), "/dev/COM0");
    EXPECT_EQ(deviceNode("COM-1"), "/dev/COM-1");
    EXPECT_EQ(deviceNode("COM1x"), "/dev/COM1x");
    EXPECT_EQ(deviceNode("COM 1"), "/dev/COM 1");
    EXPECT_EQ(deviceNode("COM99999999999"), "/dev/COM99999999999");
}

TEST(DeviceNode, OfComInOtherLettersIsAPlainName) { EXPECT_EQ(deviceNode("com1"), "/dev/com1"); }

TEST(DeviceNode, OfANameWithASlashStandsAsItIs) {
    EXPECT_EQ(deviceNode("/dev/ttyUSB0"), "/dev/ttyUSB0");
    EXPECT_EQ(deviceNode("/dev/pts/5"), "/dev/pts/5");
    EXPECT_EQ(deviceNode("/dev/serial/by-id/usb-A_B-if00"), "/dev/serial/by-id/usb-A_B-if00");
    EXPECT_EQ(deviceNode("./line"), "./line");
}

TEST(DeviceNode, OfABareNameIsANodeInDev) {
    EXPECT_EQ(deviceNode("ttyUSB0"), "/dev/ttyUSB0");
    EXPECT_EQ(deviceNode("ttyS3"), "/dev/ttyS3");
}

TEST(DeviceNode, DropsTheBlanksAroundAName) {
    EXPECT_EQ(deviceNode("  COM2\t"), "/dev/ttyS1");
    EXPECT_EQ(deviceNode(" ttyUSB0 "), "/dev/ttyUSB0");
    EXPECT_EQ(deviceNode(" /dev/pts/5 "), "/dev/pts/5");
}

TEST(DeviceNode, OfNothingIsNothing) {
    EXPECT_EQ(deviceNode(""), "");
    EXPECT_EQ(deviceNode("  \t "), "");
}

TEST(NameInCapitals, IsMeantBySmallLettersOfVirtualAndCom) {
    EXPECT_EQ(meantInCapitals("virtual"), "VIRTUAL");
    EXPECT_EQ(meantInCapitals(" Virtual "), "VIRTUAL");
    EXPECT_EQ(meantInCapitals("com1"), "COM1");
    EXPECT_EQ(meantInCapitals("Com20"), "COM20");
}

TEST(NameInCapitals, IsMeantByNoOtherName) {
    for (const char* const name :
         {"VIRTUAL", "COM1", "com", "com0", "com1x", "ttyusb0", "/dev/virtual", ""}) {
        EXPECT_EQ(meantInCapitals(name), "") << name;
    }
}

} // namespace
} // namespace varda

#endif
