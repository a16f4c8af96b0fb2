#pragma once

#include "core/insight/decoder.h"
#include "core/link/exchange.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

class ProfileFile;

/// The text of an expectation that no answer comes.
inline constexpr std::string_view expectedSilence = "silence";

/// Whether a request went out and nothing came for it.
bool isSilent(const Exchange& exchange);
/// Whether something came for it, of whatever length.
bool hasAnswer(const Exchange& exchange);
/// What became of a request that has no answer of the awaited length: "No answer came."
std::string whyNoAnswer(const Exchange& exchange);

/// What is wanted of the answer to a request.
class Expectation {
public:
    /// Reads what is wanted: "silence"; the bytes of the answer, "00 FF A3 02 .. .. 58 C6", where ".." stands
    /// for any byte; or values that it brings, "W 0100 >= 10; R 0012.3 = ON".
    /// @throws RuntimeError 13 where it is none of these; its advice says which part
    static Expectation parse(std::string_view text);

    /// The answer must be there so soon after the request was sent.
    void setLimit(std::chrono::milliseconds limit) { limit_ = limit; }

    /// Whether no answer is wanted.
    bool isSilence() const { return isSilence_; }

    /// @param exchange that has ended @return why it is not what was wanted; empty where it is
    std::string judge(const Exchange& exchange) const;

private:
    enum class Comparison { Equal, Unequal, Below, AtMost, Above, AtLeast };

    struct Value {
        std::string text; ///< as it was written
        Point point;
        Comparison comparison;
        int number;
    };

    static Value parseValue(std::string_view text);
    static bool holds(Comparison comparison, int found, int wanted);
    std::string judgeBytes(const Bytes& answer) const;
    std::string judgeValues(const Exchange& exchange) const;

    bool isSilence_ = false;
    std::vector<std::optional<std::uint8_t>> bytes_; ///< nothing for any byte
    std::vector<Value> values_;
    std::optional<std::chrono::milliseconds> limit_;
};

/// What a file says of a line of a scenario, as it stands there.
struct ExpectationText {
    std::string wanted; ///< empty where nothing is
    std::string limit;  ///< in milliseconds

    bool operator==(const ExpectationText&) const = default;
};

/// Whether a file says anything of the answers to so many lines.
bool holdsExpectations(const ProfileFile& file, std::size_t lines);

/// The entries that loadExpectations reads. @param lines how many the scenario has
std::vector<ExpectationText> expectationTexts(const ProfileFile& file, std::size_t lines);

/// The expectation of such an entry; nothing where nothing is wanted.
/// @param line of the scenario, from 0, by which a report names the limit
/// @throws RuntimeError 13 where it is not understood
std::optional<Expectation> readExpectation(const ExpectationText& text, std::size_t line);

/// Reads what is wanted of the lines of a scenario: Expect0, Expect1, .. of section "Expect", and times in
/// milliseconds, Limit0, Limit1, .. of section "Limit". Of a line without an entry nothing is wanted.
/// @param lines how many the scenario has
/// @throws RuntimeError 13 where an entry is not understood; its advice names it
std::vector<std::optional<Expectation>> loadExpectations(const ProfileFile& file, std::size_t lines);

} // namespace varda::core
