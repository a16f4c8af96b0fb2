#pragma once

namespace varda::faults {

/// Which call to the system about a file fails, and how. Counted from 1.
struct FilePlan {
    int call = 0;
    int error = 0;          ///< 0: the process is killed there instead
    bool isLasting = false; ///< so do all behind it
};

/// As long as this is there the calls of this thread are counted, and fail as is planned.
///
/// The program that this stands in has functions of its own in the place of the system's library: what it
/// links, and the libraries that it loads, call them.
class FileFault {
public:
    explicit FileFault(FilePlan plan);
    FileFault(const FileFault&) = delete;
    FileFault& operator=(const FileFault&) = delete;
    FileFault(FileFault&&) = delete;
    FileFault& operator=(FileFault&&) = delete;
    ~FileFault();

    bool hasStruck() const;
    int calls() const;
};

} // namespace varda::faults
