#pragma once

#include <stdexcept>
#include <string>

namespace varda::cli {

/// What the tool tells who started it.
enum class ExitCode {
    Right = 0,
    Failed = 1, ///< no answer, a wrong one, or a frame that has a flaw
    Usage = 2,  ///< the command line is not understood, or names a file that is not there
    Port = 3,   ///< the port does not open, or went away
    File = 4    ///< a file cannot be read or written
};

/// Ends a subcommand; the text names what it is about, and the remedy.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), code_(code) {}

    ExitCode code() const noexcept { return code_; }

private:
    ExitCode code_;
};

/// Does the second thing however the first one ends; what the first one throws comes behind it.
template <typename First, typename Second>
void doBoth(First&& first, Second&& second) {
    try {
        first();
    } catch (...) {
        second();
        throw;
    }
    second();
}

} // namespace varda::cli
