#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace varda::inline core {

/// The numbers of the reports that this program makes; those of the serial control stand in comm_error.
namespace run_time_error {

inline constexpr int invalidProcedureCall = 5;
inline constexpr int overflow = 6;
inline constexpr int outOfMemory = 7;
inline constexpr int subscriptOutOfRange = 9;
inline constexpr int typeMismatch = 13;
inline constexpr int fileNotFound = 53;
inline constexpr int deviceError = 57;
inline constexpr int diskFull = 61;
inline constexpr int tooManyFiles = 67;
inline constexpr int permissionDenied = 70;
inline constexpr int fileAccessError = 75;
inline constexpr int pathNotFound = 76;
inline constexpr int invalidPropertyValue = 380;

} // namespace run_time_error

/// A failing statement of an event handler, with the number that the report shows.
///
/// It ends the handler it is thrown in; whoever called the handler turns it into one report.
class RuntimeError : public std::runtime_error {
public:
    RuntimeError(int number, const std::string& description)
        : std::runtime_error(description), number_(number) {}

    int number() const noexcept { return number_; }

    /// Names what it was about, and says what helps; empty where nobody knew. It stands below the
    /// description, which stays what it is.
    const std::string& advice() const noexcept { return advice_; }
    /// The first one to know is nearest to what failed: later advice is passed over.
    void advise(const std::string& advice) {
        if (advice_.empty()) {
            advice_ = advice;
        }
    }

private:
    int number_;
    std::string advice_;
};

/// Runs something; a RuntimeError of it gets what `advice` returns for it.
template <typename Step, typename Advice>
decltype(auto) advised(Step&& step, Advice&& advice) {
    try {
        return std::forward<Step>(step)();
    } catch (RuntimeError& error) {
        error.advise(std::forward<Advice>(advice)(error));
        throw;
    }
}

/// 6: a number left its 16-bit or 8-bit range.
inline RuntimeError overflow() { return {run_time_error::overflow, "Overflow"}; }
/// 9: an index past the end of a fixed array or of a list.
inline RuntimeError subscriptOutOfRange() {
    return {run_time_error::subscriptOutOfRange, "Subscript out of range"};
}
/// 13: a text is no number.
inline RuntimeError typeMismatch() { return {run_time_error::typeMismatch, "Type mismatch"}; }
/// 53: a program or a file that is not there. @param what names it, and says what helps
inline RuntimeError fileNotFound(const std::string& what) {
    return {run_time_error::fileNotFound, "File not found: " + what};
}
/// 380: a control does not take the value it was given.
inline RuntimeError invalidPropertyValue() {
    return {run_time_error::invalidPropertyValue, "Invalid property value"};
}

} // namespace varda::core
