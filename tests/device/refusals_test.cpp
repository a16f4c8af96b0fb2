#include "device/refusals.h"

#include <asio/error.hpp>
#include <gtest/gtest.h>

#include <cerrno>

namespace varda {

using namespace device;
namespace {

/// As Asio throws an error of the system, with a category of its own.
std::system_error ofAsio(int systemError) {
    return {std::error_code(systemError, asio::error::get_system_category()), "set_option"};
}

std::system_error ofSystem(int systemError) { return {systemError, std::generic_category(), "tcsetattr"}; }

void expectRefusal(const std::runtime_error& reason, int number, const std::string& text) {
    const RuntimeError error = cannotBeSetUp("COM1", {1234, 'e', 7, 2}, reason);
    EXPECT_EQ(error.number(), number);
    EXPECT_EQ(std::string(error.what()), text);
}

TEST(CannotBeSetUp, SendsToOtherSettingsWhereTheDriverDoesNotTakeThese) {
    expectRefusal(
        std::runtime_error("the driver takes no such parity"), 8015,
        "COM1 cannot be set up as 1234,e,7,2 (the driver takes no such parity). Choose other settings.");
    for (const auto& reason : {ofAsio(EINVAL), ofSystem(EINVAL)}) {
        expectRefusal(reason, 8015,
                      "COM1 cannot be set up as 1234,e,7,2 (Invalid argument). Choose other settings.");
    }
}

TEST(CannotBeSetUp, IsNoSuchDeviceWhereItIsThereNoMore) {
    for (const int gone : {EIO, ENODEV, ENXIO}) {
        for (const auto& reason : {ofAsio(gone), ofSystem(gone)}) {
            expectRefusal(reason, 8002, "No such device: COM1. Check its name, and that it is plugged in.");
        }
    }
}

TEST(CannotBeSetUp, TellsEveryOtherReasonOfTheSystems) {
    for (const auto& reason : {ofAsio(EMFILE), ofSystem(EMFILE)}) {
        expectRefusal(reason, 8015, "COM1 cannot be opened: Too many open files.");
    }
    expectRefusal(ofSystem(EAGAIN), 8015, "COM1 cannot be opened: Resource temporarily unavailable.");
    expectRefusal(ofAsio(EPERM), 8015, "COM1 cannot be opened: Operation not permitted.");
}

} // namespace
} // namespace varda
