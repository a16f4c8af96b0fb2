#include "turns.h"

#include "core/protocol/crc16.h"

#include <boost/crc.hpp>

#include <cstdint>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

/// The frame check of the program, by turns with that of a library, over a short frame and the longest one.
namespace {

using Bytes = std::vector<std::uint8_t>;
using Reflected = boost::crc_optimal<16, 0x8005, 0xFFFF, 0, true, true>;

std::uint16_t checkOfLibrary(const Bytes& bytes) {
    Reflected check;
    check.process_bytes(bytes.data(), bytes.size());
    return static_cast<std::uint16_t>(check.checksum());
}

/// Nanoseconds of one check. Each check changes the bytes, so that none can be left out.
template <typename Check>
double timeOf(Check check, Bytes bytes) {
    constexpr int checks = 20'000;
    const double time = varda::bench::leastProcessorTime([&] {
        for (int count = 0; count < checks; ++count) {
            bytes.front() = static_cast<std::uint8_t>(check(bytes));
        }
    });
    return time * 1e6 / checks;
}

void measure(const std::string& what, std::size_t size) {
    std::mt19937 engine(1);
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(engine());
    }
    if (varda::crc16(bytes) != checkOfLibrary(bytes)) {
        throw std::runtime_error("the two checks are not the same");
    }
    const auto ours = [](const Bytes& frame) { return varda::crc16(frame); };
    print(what, "Boost.CRC", "ns",
          varda::bench::byTurns([&] { return timeOf(ours, bytes); },
                                [&] { return timeOf(checkOfLibrary, bytes); }));
}

} // namespace

int main() try {
    measure("check of a frame of 9 bytes", 9);
    measure("check of a frame of 519 bytes", 519);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
