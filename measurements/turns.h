#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace varda::bench {

/// What a measurement found in its runs, ours and the other's by turns.
struct Turns {
    std::vector<double> ours;
    std::vector<double> theirs;
};

/// So many runs of each; a median of fewer says little.
constexpr int turnCount = 7;

/// Milliseconds that a call takes, with all that it waits for: the least of some, since a busy machine only
/// ever adds.
double leastTime(const std::function<void()>& call);

/// Milliseconds of processor time that a call takes in the thread it is made in; the least of some. Of one
/// that waits for nothing it is what the user waits for, and it does not count who else had the processor.
/// @param before goes before each and is not counted
double leastProcessorTime(
    const std::function<void()>& call, const std::function<void()>& before = [] {});

/// Measures two calls by turns.
Turns byTurns(const std::function<double()>& ours, const std::function<double()>& theirs);

/// Prints the one line that ./bench reads: "turns", what is measured, beside what, the unit, and both series.
void print(const std::string& what, const std::string& beside, const std::string& unit, const Turns& turns);

} // namespace varda::bench
