#pragma once

#ifdef _WIN32
// In this order: the first defines what the second uses.
#include <windows.h>

#include <psapi.h>
#else
#include <fstream>

#include <unistd.h>
#endif

namespace varda::test {

/// Resident memory of this process in bytes.
inline long long memoryUse() {
#ifdef _WIN32
    PROCESS_MEMORY_COUNTERS counters{};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof(counters));
    return static_cast<long long>(counters.WorkingSetSize);
#else
    long whole = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident;
    return resident * ::sysconf(_SC_PAGESIZE);
#endif
}

} // namespace varda::test
