#pragma once

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace varda::test {

/// Divides this process into two. @return the other one's id here, and 0 there
/// @throws std::system_error where there is room for no other: its "id" is -1, and a signal to that goes to
/// every process
inline int divideProcess() {
    const int child = ::fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "no process");
    }
    return child;
}

} // namespace varda::test
