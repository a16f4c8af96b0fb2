#include "platform/port_names.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace varda {
namespace {

TEST(PortNames, AreDevicesThatAreReallyThereInOrder) {
    const auto ports = portNames();
    QString last;
    for (const PortName& port : ports) {
        struct stat found {};
        EXPECT_EQ(::stat(port.node.toStdString().c_str(), &found), 0) << port.node.toStdString();
        EXPECT_TRUE(S_ISCHR(found.st_mode)) << port.node.toStdString();
        EXPECT_LT(last, port.node);
        last = port.node;
    }
}

TEST(DescriptionOfAPort, NamesWhatIsKnownOfTheDevice) {
    const auto node = QStringLiteral("/dev/ttyUSB0");
    EXPECT_EQ(describe({node, {}, {}}), QStringLiteral("/dev/ttyUSB0"));
    EXPECT_EQ(describe({node, QStringLiteral("USB Serial"), {}}),
              QStringLiteral("/dev/ttyUSB0 - USB Serial"));
    EXPECT_EQ(describe({node, {}, QStringLiteral("A10K")}),
              QStringLiteral("/dev/ttyUSB0 (serial number A10K)"));
    EXPECT_EQ(describe({node, QStringLiteral("USB Serial"), QStringLiteral("A10K")}),
              QStringLiteral("/dev/ttyUSB0 - USB Serial (serial number A10K)"));
}

} // namespace
} // namespace varda
