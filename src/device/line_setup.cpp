#include "device/line_setup.h"

#include "device/driver.h"

#include <cstdint>
#include <cstdlib>
#include <stdexcept>

namespace varda::device {
namespace {

using Base = asio::serial_port_base;

std::runtime_error notHeld(const char* setting) {
    return std::runtime_error(std::string("the driver takes no such ") + setting);
}

Base::parity::type parityOf(char letter) {
    switch (letter) {
    case 'e':
        return Base::parity::even;
    case 'o':
        return Base::parity::odd;
    default:
        return Base::parity::none;
    }
}

template <typename Option>
Option held(const asio::serial_port& port) {
    Option option;
    port.get_option(option);
    return option;
}

void setBaudRate(asio::serial_port& port, int rate) {
    std::error_code error;
    port.set_option(Base::baud_rate(static_cast<unsigned>(rate)), error);
    if (error && !driver::setAnyBaudRate(port.native_handle(), rate)) {
        throw std::system_error(error);
    }
    if (!isNearBaudRate(driver::heldBaudRate(port.native_handle()), rate)) {
        throw notHeld("baud rate");
    }
}

} // namespace

bool isNearBaudRate(int held, int asked) {
    constexpr std::int64_t percent = 100;
    constexpr std::int64_t tolerance = 3; // of a frame of ten bits, less than a third of the last one
    return std::abs(std::int64_t{held} - asked) * percent <= std::int64_t{asked} * tolerance;
}

void setUp(asio::serial_port& port, const LineSettings& settings) {
    const Base::character_size dataBits(static_cast<unsigned>(settings.dataBits));
    const Base::stop_bits stopBits(settings.stopBits == 2 ? Base::stop_bits::two : Base::stop_bits::one);
    const Base::parity parity(parityOf(settings.parity));
    driver::makeRaw(port.native_handle());
    port.set_option(Base::flow_control(Base::flow_control::none));
    port.set_option(stopBits);
    port.set_option(parity);
    setBaudRate(port, settings.baudRate);
    driver::ignoreParityErrors(port.native_handle());
    driver::raiseControlLines(port.native_handle());
    if (driver::isPseudoTerminal(port.native_handle())) {
        return; // whatever is asked for, its bytes have eight bits and no parity
    }
    port.set_option(dataBits);
    if (held<Base::character_size>(port).value() != dataBits.value()) {
        throw notHeld("number of data bits");
    }
    if (held<Base::stop_bits>(port).value() != stopBits.value()) {
        throw notHeld("number of stop bits");
    }
    if (held<Base::parity>(port).value() != parity.value()) {
        throw notHeld("parity");
    }
}

} // namespace varda::device
