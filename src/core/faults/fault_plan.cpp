#include "core/faults/fault_plan.h"

#include "core/base/conversion.h"
#include "core/base/runtime_error.h"

#include <algorithm>
#include <array>
#include <optional>

namespace varda::inline core {
namespace {

constexpr FaultRange milliseconds{1, 600'000};
constexpr FaultRange bytes{1, 512};
constexpr FaultRange none{0, 0};

constexpr std::array rules = {
    FaultRule{FaultKind::HangUp, "hangup", "", none, none, "The line goes away instead of the frame.",
              "the line hung up"},
    FaultRule{FaultKind::Silence,
              "silence",
              "ms",
              milliseconds,
              {5000, 5000},
              "Nothing is sent from this frame on for so long.",
              "silence of # ms"},
    FaultRule{FaultKind::Drop, "drop", "", none, none, "The frame is not sent.", "dropped"},
    FaultRule{FaultKind::Command, "command", "", none, none, "Another command's code; the check stays right.",
              "another command, #"},
    FaultRule{FaultKind::Station,
              "station",
              "station",
              {0, 255},
              {0, 255},
              "Another station: the one that answers, or that is asked; the check stays right.",
              "another station, #"},
    FaultRule{FaultKind::Check, "check", "", none, none, "Another frame check.", "check broken"},
    FaultRule{FaultKind::Flip,
              "flip",
              "bits",
              {1, 16},
              {1, 1},
              "So many bits are the other way round.",
              "bits flipped: #"},
    FaultRule{FaultKind::Cut,
              "cut",
              "bytes",
              bytes,
              {1, 4},
              "So many bytes are missing at the end; one stays.",
              "bytes cut off: #"},
    FaultRule{FaultKind::NoiseBefore,
              "noise-before",
              "bytes",
              bytes,
              {1, 4},
              "So many drawn bytes come in front.",
              "bytes of noise before it: #"},
    FaultRule{FaultKind::NoiseBehind,
              "noise-behind",
              "bytes",
              bytes,
              {1, 4},
              "So many drawn bytes follow.",
              "bytes of noise behind it: #"},
    FaultRule{FaultKind::Double,
              "double",
              "ms",
              {0, 600'000},
              {0, 0},
              "It is sent once more, so long afterwards; 0 lets both run together.",
              "sent once more # ms later"},
    FaultRule{FaultKind::Split,
              "split",
              "ms",
              milliseconds,
              {200, 200},
              "It comes in two pieces with a pause.",
              "split by a pause of # ms"},
    FaultRule{
        FaultKind::Late, "late", "ms", milliseconds, {50, 500}, "It is sent so much later.", "# ms late"},
};

RuntimeError notUnderstood(const std::string& text) { return {run_time_error::typeMismatch, text}; }

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::string names() {
    std::string text;
    for (const FaultRule& rule : rules) {
        text += (text.empty() ? "" : ", ") + std::string(rule.name);
    }
    return text;
}

std::string rangeText(const FaultRange& range) {
    return range.low == range.high ? std::to_string(range.low)
                                   : std::to_string(range.low) + ".." + std::to_string(range.high);
}

FaultRange readRange(std::string_view text, const FaultRule& rule) {
    constexpr std::string_view dots = "..";
    const auto at = text.find(dots);
    const auto low = readDigits(text.substr(0, at));
    const auto high = at == std::string_view::npos ? low : readDigits(text.substr(at + dots.size()));
    const bool isInside =
        low && high && *low <= *high && *low >= rule.allowed.low && *high <= rule.allowed.high;
    if (!isInside) {
        throw notUnderstood(quoted(text) + " does not go with " + std::string(rule.name) + ": " +
                            std::string(rule.parameter) + ", " + rangeText(rule.allowed) +
                            ", one number or two of them with .. between.");
    }
    return {*low, *high};
}

/// Millionths of a percentage with up to four decimals.
std::optional<std::uint32_t> readShare(std::string_view text) {
    constexpr std::size_t decimals = 4;
    const auto point = text.find('.');
    std::string digits(text.substr(0, point));
    const std::string_view behind = point == std::string_view::npos ? "" : text.substr(point + 1);
    if (behind.size() > decimals || digits.empty()) {
        return std::nullopt;
    }
    digits.append(behind).append(decimals - behind.size(), '0');
    const auto share = readDigits(digits);
    return share && *share >= 1 && *share <= FaultRate::million ? share : std::nullopt;
}

std::string shareText(std::uint32_t share) {
    constexpr std::uint32_t percent = FaultRate::million / 100;
    std::string behind = std::to_string(percent + share % percent).substr(1);
    behind.erase(behind.find_last_not_of('0') + 1);
    return std::to_string(share / percent) + (behind.empty() ? "" : '.' + behind) + '%';
}

std::string_view ordinalEnd(std::uint32_t number) {
    constexpr std::array<std::string_view, 4> ends = {"th", "st", "nd", "rd"};
    const bool isTeen = number / 10 % 10 == 1;
    return isTeen || number % 10 >= ends.size() ? ends[0] : ends.at(number % 10);
}

std::optional<FaultRate> readRateOrNothing(std::string_view text) {
    constexpr std::string_view only = "only";
    constexpr std::size_t ending = 2; // of an ordinal number
    const auto made = [](FaultRate::Kind kind, std::optional<std::uint32_t> number) {
        return number && *number > 0 ? std::optional(FaultRate{kind, *number}) : std::nullopt;
    };
    if (text.starts_with(only)) {
        return made(FaultRate::Kind::Only, readDigits(text.substr(only.size())));
    }
    if (text.ends_with('%')) {
        return made(FaultRate::Kind::Share, readShare(text.substr(0, text.size() - 1)));
    }
    const std::string_view end = text.substr(text.size() - std::min(text.size(), ending));
    const auto number = readDigits(text.substr(0, text.size() - end.size()));
    return number && end == ordinalEnd(*number) ? made(FaultRate::Kind::Each, number) : std::nullopt;
}

FaultRate readRate(std::string_view text) {
    const auto rate = readRateOrNothing(text);
    if (!rate) {
        throw notUnderstood(quoted(text) + " does not say how often: 3rd for each third frame, 1% for "
                                           "one of a hundred, only20 for the twentieth alone.");
    }
    return *rate;
}

PlannedFault readFault(std::string_view part) {
    const auto rateAt = part.find('@');
    const std::string_view what = part.substr(0, rateAt);
    const auto numberAt = what.find('=');
    const std::string_view name = what.substr(0, numberAt);
    const auto* const rule = std::ranges::find(rules, name, &FaultRule::name);
    if (rule == rules.end()) {
        throw notUnderstood(quoted(name) + " is no fault. There are: " + names() + '.');
    }
    PlannedFault fault = presetFault(rule->kind);
    if (numberAt != std::string_view::npos) {
        if (rule->parameter.empty()) {
            throw notUnderstood(std::string(name) + " has no number: leave " + quoted(what.substr(numberAt)) +
                                " away.");
        }
        fault.number = readRange(what.substr(numberAt + 1), *rule);
    }
    if (rateAt != std::string_view::npos) {
        fault.rate = readRate(part.substr(rateAt + 1));
    }
    return fault;
}

/// Without blanks, in small letters.
std::string plain(std::string_view text) {
    std::string made;
    for (const char character : text) {
        const bool isCapital = character >= 'A' && character <= 'Z';
        if (character != ' ' && character != '\t') {
            made += isCapital ? static_cast<char>(character - 'A' + 'a') : character;
        }
    }
    return made;
}

void add(FaultPlan& plan, const PlannedFault& fault) {
    const auto place = std::ranges::lower_bound(plan, fault.kind, {}, &PlannedFault::kind);
    if (place != plan.end() && place->kind == fault.kind) {
        throw notUnderstood(std::string(ruleOf(fault.kind).name) +
                            " stands there twice. Leave one of them away.");
    }
    plan.insert(place, fault);
}

} // namespace

std::span<const FaultRule> faultRules() { return rules; }

const FaultRule& ruleOf(FaultKind kind) { return rules.at(static_cast<std::size_t>(kind)); }

PlannedFault presetFault(FaultKind kind) { return {kind, ruleOf(kind).preset, {}}; }

std::string numberText(const PlannedFault& fault) {
    return ruleOf(fault.kind).parameter.empty() ? std::string() : rangeText(fault.number);
}

std::string rateText(const FaultRate& rate) {
    const std::string number = std::to_string(rate.number);
    switch (rate.kind) {
    case FaultRate::Kind::Share:
        return '@' + shareText(rate.number);
    case FaultRate::Kind::Only:
        return "@only" + number;
    default:
        return rate.number == 1 ? "" : '@' + number + std::string(ordinalEnd(rate.number));
    }
}

FaultPlan parseFaults(std::string_view text) {
    FaultPlan plan;
    const std::string typed = plain(text);
    for (std::string_view rest = typed; !rest.empty();) {
        const auto end = std::min(rest.find(','), rest.size());
        add(plan, readFault(rest.substr(0, end)));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return plan;
}

std::string faultText(const FaultPlan& plan) {
    std::string text;
    for (const PlannedFault& fault : plan) {
        const FaultRule& rule = ruleOf(fault.kind);
        text += (text.empty() ? "" : ",") + std::string(rule.name);
        text += rule.parameter.empty() || fault.number == rule.preset ? "" : '=' + rangeText(fault.number);
        text += rateText(fault.rate);
    }
    return text;
}

std::string faultHelp() {
    std::string text;
    for (const FaultRule& rule : rules) {
        const std::string number =
            rule.parameter.empty() ? ""
                                   : " (" + std::string(rule.parameter) + ", " + rangeText(rule.preset) + ')';
        text += "  " + std::string(rule.name) + number + ": " + std::string(rule.help) + '\n';
    }
    return text;
}

} // namespace varda::core
