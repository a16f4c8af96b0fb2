#include "cli/fault_choice.h"

#include <cerrno>
#include <cstdlib>
#include <ostream>
#include <random>

namespace varda::cli {
namespace {

std::string faultsInWords() {
    std::string text = "Do this on purpose to what is sent, NAME[=NUMBER][@RATE] between commas, as "
                       "late=50..200,drop@3rd,flip@1%:";
    for (const FaultRule& rule : faultRules()) {
        text += ' ' + std::string(rule.name);
    }
    return text;
}

/// The parser takes one below 0, or too large, for another number without a word.
std::string refusalOfSeed(const std::string& text) {
    errno = 0;
    static_cast<void>(std::strtoull(text.c_str(), nullptr, 0));
    const bool isNumber = errno == 0 && text.find('-') == std::string::npos && !text.empty();
    return isNumber ? "" : '"' + text + "\" is no seed: 0 to 18446744073709551615.";
}

} // namespace

void FaultChoice::declare(CLI::App& app) {
    CLI::Option* const fault = app.add_option("--fault", faults, faultsInWords());
    app.add_option("--seed", seed, "Draw the faults as a run with this number did")
        ->needs(fault)
        ->check(refusalOfSeed);
}

void FaultChoice::apply(FaultInjector& injector, const Streams& streams, Report& report) const {
    FaultPlan plan = parseFaults(faults);
    if (plan.empty()) {
        return;
    }
    const std::uint64_t number = seed ? *seed : std::random_device()();
    if (!seed) {
        streams.error << "The faults are drawn with --seed " << number << ".\n" << std::flush;
    }
    injector.setWatcher([&report](const FaultDone& fault) { report.fault(fault); });
    injector.setPlan(std::move(plan), number);
}

} // namespace varda::cli
