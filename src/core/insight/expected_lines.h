#pragma once

#include "core/insight/expectation.h"
#include "core/insight/taken_expectations.h"
#include "core/link/exchange.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace varda::inline core {

class ProfileFile;

/// The lines of a scenario with what is wanted of their answers, and what became of that in a run.
class ExpectedLines {
public:
    struct Line {
        ExpectationText text;
        std::string flaw; ///< why the text is not understood: nothing is wanted of the line then
        std::optional<Expectation> wanted;
        bool isJudged = false;   ///< in the run
        std::string why;         ///< it was not what was wanted the last time; empty where it was
        std::uint64_t right = 0; ///< rounds
        std::uint64_t wrong = 0; ///< rounds
    };

    const std::vector<Line>& lines() const { return lines_; }
    std::size_t right() const;
    std::size_t wrong() const;

    /// The scenario has other lines from now on; those that stay keep what is wanted of them.
    void insert(std::size_t first, std::size_t count);
    void remove(std::size_t first, std::size_t count);
    void clear();

    /// Whether that line is to be answered with silence.
    bool isSilenceExpected(std::size_t line) const;

    void setText(std::size_t line, ExpectationText text);
    void load(const ProfileFile& file);
    void store(ProfileFile& file) const;

    /// A run begins: it is judged and taken from anew.
    void begin();
    /// @param sent the line that is being sent by a run; nothing where something else is
    void told(const Exchange& exchange, std::optional<std::size_t> sent);
    /// Wants from now on what came in this run, limits stay. @return lines for which that is known
    std::size_t takeFromRun();

private:
    void judge(std::size_t line, const Exchange& exchange);

    std::vector<Line> lines_;
    TakenExpectations taken_{0};
    std::optional<std::size_t> underWay_; ///< the line of which nothing has become yet
};

} // namespace varda::core
