#pragma once

#include <cstdint>

namespace varda::faults {

/// Whose calls are counted: those of the thread that plans the fault, or those of all others.
enum class Callers : std::uint8_t { ThisThread, OtherThreads };

/// Which call to the system about a file or a port fails, and how. Counted from 1.
struct CallPlan {
    int call = 0;
    int error = 0;          ///< 0: the process is killed there instead
    bool isLasting = false; ///< so do all behind it
    Callers callers = Callers::ThisThread;
};

/// As long as this is there calls are counted, and fail as is planned. One at a time.
///
/// The program that this stands in has functions of its own in the place of the system's library: what it
/// links, and the libraries that it loads, call them.
class SystemFault {
public:
    explicit SystemFault(CallPlan plan);
    SystemFault(const SystemFault&) = delete;
    SystemFault& operator=(const SystemFault&) = delete;
    SystemFault(SystemFault&&) = delete;
    SystemFault& operator=(SystemFault&&) = delete;
    ~SystemFault();

    bool hasStruck() const;
    int calls() const;
};

} // namespace varda::faults
