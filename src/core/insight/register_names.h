#pragma once

#include "core/protocol/register_words.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// What the user calls registers.
class RegisterNames {
public:
    /// Files that are larger hold no names.
    static constexpr std::size_t sizeLimit = std::size_t{4} << 20U;

    /// One name a line, "W 0100,tank level"; the name may stand in double quotes. Empty lines and those that
    /// begin with "#" mean nothing. The last one of two names of a register counts.
    static RegisterNames parse(std::string_view csv);

    /// The user's name, empty where there is none.
    std::string_view find(const Point& point) const;
    /// "W 0100 (tank level)", or the register alone.
    std::string describe(const Point& point) const;

    std::size_t size() const { return names_.size(); }
    /// Numbers of the lines, from 1, that are no names.
    const std::vector<std::size_t>& badLines() const { return badLines_; }

private:
    void takeLine(std::string_view line, std::size_t number);

    std::map<Point, std::string> names_;
    std::vector<std::size_t> badLines_;
};

/// For those who have no names to give.
const RegisterNames& noNames();

} // namespace varda::core
