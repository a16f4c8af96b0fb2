#include "cli/program.h"
#include "core/base/own_arguments.h"

#include <csignal>
#include <iostream>

int main(int argc, char** argv) {
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN); // a reader that goes away is a failed write, which is told
#endif
    return varda::cli::run(varda::ownArguments(argc, argv), {std::cin, std::cout, std::cerr});
}
