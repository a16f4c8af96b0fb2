#pragma once

#include "core/link/exchange.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace varda::inline core {

class ProfileFile;

/// What is to be expected of the lines of a scenario from now on, taken from what was answered: the bytes of
/// the answer, ".." for those that were not the same in every round, or silence.
class TakenExpectations {
public:
    /// @param lines of the scenario
    explicit TakenExpectations(std::size_t lines) : lines_(lines) {}

    /// @param line from 0 @param exchange that has ended; nothing is taken where the request did not go out
    void take(std::size_t line, const Exchange& exchange);

    /// As Expectation::parse reads them. Empty for a line that was not asked, or that was answered with so
    /// many bytes in one round and with others, or silence, in another.
    std::vector<std::string> texts() const;

private:
    struct Line {
        bool isTaken = false;
        bool isUnclear = false;
        std::vector<std::optional<std::uint8_t>> bytes; ///< none where it was silent
    };

    std::vector<Line> lines_;
};

/// Writes them where loadExpectations reads them; what the file has for a line without a text stays, for
/// nothing better is known of that, and so do limits.
void storeExpectations(const std::vector<std::string>& texts, ProfileFile& file);

} // namespace varda::core
