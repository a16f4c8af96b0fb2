#include "core/link/exchange.h"

#include <array>

namespace varda::inline core {

bool isEnd(Outcome outcome) {
    switch (outcome) {
    case Outcome::NotSent:
    case Outcome::Answered:
    case Outcome::WrongLength:
    case Outcome::Silent:
    case Outcome::Overtaken:
    case Outcome::HungUp:
        return true;
    default:
        return false;
    }
}

bool isRefusedFromMemory(const Exchange& exchange) {
    return exchange.outcome == Outcome::AnsweredFromMemory && exchange.answer.empty();
}

std::string_view inWords(Outcome outcome) {
    /// In the order of Outcome.
    constexpr std::array<std::string_view, outcomeCount> words = {"sent",
                                                                  "not sent",
                                                                  "answered",
                                                                  "wrong length",
                                                                  "nothing to read",
                                                                  "silent",
                                                                  "overtaken",
                                                                  "thrown away",
                                                                  "hung up",
                                                                  "ignored",
                                                                  "heard",
                                                                  "answered by a pair",
                                                                  "unknown",
                                                                  "answered from memory"};
    return words.at(static_cast<std::size_t>(outcome));
}

std::string_view inWords(Discarding why) {
    /// In the order of Discarding.
    constexpr std::array<std::string_view, 5> words = {
        "before the next send", "by the tick that follows a reception",
        "when the wait for an answer was given up", "when the request before it had been dealt with",
        "when the simulation was left"};
    return words.at(static_cast<std::size_t>(why));
}

} // namespace varda::core
