#include "cli/program.h"

#include <csignal>
#include <iostream>

int main(int argc, char** argv) {
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN); // a reader that goes away is a failed write, which is told
#endif
    return varda::cli::run({argv + 1, argv + argc}, {std::cin, std::cout, std::cerr});
}
