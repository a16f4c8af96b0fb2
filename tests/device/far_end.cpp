#include "core/virtual/controller.h"
#include "support/pseudo_terminal.h"

#include <cstdio>
#include <thread>

/// The embedded controller at the far end of a pseudo-terminal, whose path it prints. Requests have nine
/// bytes. It ends when it is killed.
int main() {
    constexpr std::size_t requestLength = 9;
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
