#include "core/base/runtime_error.h"
#include "core/link/mscomm.h"
#include "core/protocol/independent_check.h"
#include "core/virtual/controller.h"
#include "device/device_line.h"
#include "device/port_names.h"
#include "support/task_loop.h"

#include <cstdio>
#include <random>

/// Exchanges frames on a port whose far end is varda_far_end: a program without a window, on the core and the
/// device line alone. It keeps a controller of its own beside the far end's, so that it knows each answer.
/// Usage: varda_exchange PORT FRAMES, or without arguments to list the ports that are there
namespace {

using varda::Bytes;

constexpr unsigned seed = 20261122;

Bytes wordRead(std::uint8_t address, std::uint8_t count) {
    return varda::test::checked({0xFF, 0xFF, 0x23, 0x03, address, 0x00, count});
}

/// @return the number of frames that were answered as they should be
int exchange(const char* port, int frames) {
    varda::test::TaskLoop loop;
    varda::MSComm comm([&loop](const std::string& name) {
        return std::make_unique<varda::device::DeviceLine>(name, loop.post());
    });
    comm.setCommPort(port);
    comm.setSettings("38400,n,8,1");
    comm.open();
    varda::Controller expected;
    std::mt19937 random(seed);
    for (int done = 0; done < frames; ++done) {
        const Bytes request =
            wordRead(static_cast<std::uint8_t>(random() % 200), static_cast<std::uint8_t>(1 + random() % 50));
        const Bytes answer = expected.answer(request).value();
        comm.write(request);
        loop.runUntil([&] { return comm.inBufferCount() >= answer.size(); });
        if (comm.read().bytes != answer) {
            return done;
        }
    }
    return frames;
}

} // namespace

int main(int argc, char** argv) try {
    if (argc == 1) {
        for (const varda::device::PortName& port : varda::device::portNames()) {
            std::printf("%s\n", varda::device::describe(port).c_str());
        }
        return 0;
    }
    const int frames = argc == 3 ? std::atoi(argv[2]) : 0;
    const int done = frames > 0 ? exchange(argv[1], frames) : -1;
    std::printf("seed %u: %d of %d frames answered\n", seed, done, frames);
    return done == frames ? 0 : 1;
} catch (const std::exception& error) {
    std::printf("%s\n", error.what());
    return 1;
}
