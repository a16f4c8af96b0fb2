#include "core/link/mscomm.h"
#include "core/virtual/controller.h"
#include "device/device_line.h"
#include "support/pseudo_terminal.h"
#include "support/task_loop.h"

#include <cstdio>

/// The embedded controller at the far end of a line: of the port that is named, or of a pseudo-terminal of
/// its own, whose path it prints. Requests have nine bytes. It ends when it is killed. Usage: varda_far_end
/// [PORT]
namespace {

constexpr std::size_t requestLength = 9;

[[noreturn]] void answerOnAPseudoTerminal() {
    const varda::test::PseudoTerminal terminal;
    std::printf("%s\n", terminal.path().c_str());
    std::fflush(stdout);
    varda::Controller controller;
    varda::Bytes waiting;
    for (;;) {
        const varda::Bytes more = terminal.read(requestLength - waiting.size(), std::chrono::seconds(1));
        waiting.insert(waiting.end(), more.begin(), more.end());
        if (waiting.size() < requestLength) {
            continue;
        }
        if (const auto answer = controller.answer(waiting)) {
            terminal.write(*answer);
        }
        waiting.clear();
    }
}

[[noreturn]] void answerOn(const char* port) {
    varda::test::TaskLoop loop;
    varda::MSComm comm([&loop](const std::string& name) {
        return std::make_unique<varda::device::DeviceLine>(name, loop.post());
    });
    comm.setCommPort(port);
    comm.setSettings("38400,n,8,1");
    comm.open();
    std::printf("%s\n", port);
    std::fflush(stdout);
    varda::Controller controller;
    for (;;) {
        if (!loop.runUntil([&] { return comm.inBufferCount() >= requestLength; })) {
            continue;
        }
        if (const auto answer = controller.answer(comm.read().bytes)) {
            comm.write(*answer);
        }
    }
}

} // namespace

int main(int argc, char** argv) try {
    if (argc > 1) {
        answerOn(argv[1]);
    }
    answerOnAPseudoTerminal();
} catch (const std::exception& error) {
    std::printf("%s\n", error.what());
    return 1;
}
