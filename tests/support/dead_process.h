#pragma once

#include "support/child_process_posix.h"

#include <sys/wait.h>
#include <unistd.h>

namespace varda::test {

/// The id of a process that has ended.
inline int deadProcess() {
    const int child = divideProcess();
    if (child == 0) {
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
    return child;
}

} // namespace varda::test
