#include "cli/program.h"
#include "core/base/own_arguments.h"

#include <csignal>
#include <iostream>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>

namespace {

/// Whatever is opened takes the place of a standard stream that was closed, and what is told goes there then:
/// a port would send it. What stands there now gives no byte and takes none.
void keepPlacesOfStandardStreams() {
    int handle = ::open("/dev/null", O_RDONLY);
    while (handle >= 0 && handle <= STDERR_FILENO) {
        handle = ::open("/dev/null", O_RDONLY);
    }
    if (handle >= 0) {
        ::close(handle);
    }
}

} // namespace
#endif

int main(int argc, char** argv) {
#ifndef _WIN32
    keepPlacesOfStandardStreams();
#endif
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN); // a reader that goes away is a failed write, which is told
#endif
    return varda::cli::run(varda::ownArguments(argc, argv), {std::cin, std::cout, std::cerr});
}
