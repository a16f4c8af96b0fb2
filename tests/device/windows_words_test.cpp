#include "device/windows_words.h"

#include <gtest/gtest.h>

namespace varda {

using namespace device::windows_words;

namespace {

TEST(WindowsWords, TellAPortThatSomebodyHasFromOneThatIsNotPermitted) {
    EXPECT_EQ(refusalOf(5), Refusal::InUse) << "access denied";
    EXPECT_EQ(refusalOf(32), Refusal::InUse) << "sharing violation";
    EXPECT_EQ(refusalOf(170), Refusal::InUse) << "busy";
    EXPECT_EQ(refusalOf(1314), Refusal::NotPermitted) << "privilege not held";
    for (const unsigned long other : {0UL, 2UL, 31UL, 87UL, 1167UL}) {
        EXPECT_EQ(refusalOf(other), Refusal::Other) << other;
    }
}

TEST(WindowsWords, APortIsListedInCapitalsWithoutItsFolder) {
    for (const char* const name : {"COM42", "com42", "Com42", R"(\\.\COM42)", R"(\\.\com42)"}) {
        EXPECT_EQ(listedName(name), "COM42") << name;
    }
    EXPECT_EQ(listedName(""), "");
    EXPECT_EQ(listedName("com\xC3\xA4"), "COM\xC3\xA4") << "letters outside of ASCII stay";
}

TEST(WindowsWords, OnlyAUsbDevicesOwnNumberIsASerialNumber) {
    EXPECT_EQ(serialNumberOf(R"(USB\VID_0403&PID_6001\A10K)"), "A10K");
    EXPECT_EQ(serialNumberOf(R"(USB\VID_0403&PID_6001\5&2A3B&0&2)"), "") << "made up by the system";
    EXPECT_EQ(serialNumberOf(R"(ACPI\PNP0501\1)"), "");
    EXPECT_EQ(serialNumberOf(""), "");
}

TEST(WindowsWords, ADescriptionLeavesItsPortAway) {
    EXPECT_EQ(withoutPort("USB Serial Port (COM42)", "COM42"), "USB Serial Port");
    EXPECT_EQ(withoutPort("USB Serial Port (COM42)", "COM4"), "USB Serial Port (COM42)");
    EXPECT_EQ(withoutPort("", "COM4"), "");
}

} // namespace
} // namespace varda
