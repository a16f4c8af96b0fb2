#pragma once

#include <stdexcept>
#include <string>

namespace varda {

/// A failing statement of an event handler, with the number that the report shows.
///
/// It ends the handler it is thrown in; whoever called the handler turns it into one report.
class RuntimeError : public std::runtime_error {
public:
    RuntimeError(int number, const std::string& description)
        : std::runtime_error(description), number_(number) {}

    int number() const noexcept { return number_; }

private:
    int number_;
};

/// 6: a number left its 16-bit or 8-bit range.
inline RuntimeError overflow() { return {6, "Overflow"}; }
/// 9: an index past the end of a fixed array or of a list.
inline RuntimeError subscriptOutOfRange() { return {9, "Subscript out of range"}; }
/// 13: a text is no number.
inline RuntimeError typeMismatch() { return {13, "Type mismatch"}; }
/// 380: a control does not take the value it was given.
inline RuntimeError invalidPropertyValue() { return {380, "Invalid property value"}; }

} // namespace varda
