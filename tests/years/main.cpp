#include "support/seed.h"
#include "years/year.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Simulated time, as long as one likes: ./years --help.
namespace {

using namespace varda::years;
namespace test = varda::test;

constexpr std::string_view usage =
    "years [--seed N] [--weather sunny|stormy|radioactive] [--years N | --days N] [--DIAL N ..] [--plant "
    "WHAT]\n"
    "      [--tell-from MILLISECONDS]\n"
    "Simulated time on both ends of a serial line, drawn by a seed: a number, or hexadecimal digits as a\n"
    "commit has them. Without --seed it is that of VARDA_SEED, or else 1; without --weather the seed draws "
    "it.\n"
    "Plants are faults to be found: altered, invented, withheld, lost-wait, leak. The dials, with what they\n"
    "are set to, are in the first line that is printed. --tell-from tells all that happens from then on.\n"
    "Ends with 0 where all held, 1 where something did not, 2 where it was called in a wrong way.\n";

constexpr double millisecondsPerDay = 24.0 * 3600 * 1000;
constexpr double daysPerYear = 365.25;
constexpr double mostDays = 290 * daysPerYear; // the clock counts nanoseconds in 63 bits: 292 years

struct Wish {
    std::uint64_t seed = 1;
    std::optional<Climate> climate;
    double days = daysPerYear;
    Plant plant = Plant::None;
    std::optional<long long> tellFrom; ///< milliseconds
    std::vector<std::string> dials;    ///< "noise=200"
};

std::optional<Climate> climateOf(std::string_view name) {
    for (const Climate climate : {Climate::Sunny, Climate::Stormy, Climate::Radioactive}) {
        if (nameOf(climate) == name) {
            return climate;
        }
    }
    return std::nullopt;
}

bool takeSeed(Wish& wish, std::string_view value) {
    const auto seed = test::seedOf(value);
    wish.seed = seed.value_or(0);
    return seed.has_value();
}

bool takeDays(Wish& wish, const std::string& value, double days) {
    char* end = nullptr;
    wish.days = std::strtod(value.c_str(), &end) * days;
    return end != value.c_str() && *end == '\0' && wish.days > 0 && wish.days <= mostDays;
}

bool take(Wish& wish, std::string_view name, const std::string& value) {
    if (name == "--seed") {
        return takeSeed(wish, value);
    }
    if (name == "--weather") {
        wish.climate = climateOf(value);
        return wish.climate.has_value();
    }
    if (name == "--years" || name == "--days") {
        return takeDays(wish, value, name == "--years" ? daysPerYear : 1);
    }
    if (name == "--tell-from") {
        wish.tellFrom = std::atoll(value.c_str());
        return true;
    }
    if (name == "--plant") {
        const auto plant = plantOf(value);
        wish.plant = plant.value_or(Plant::None);
        return plant.has_value();
    }
    if (!name.starts_with("--")) {
        return false;
    }
    wish.dials.push_back(std::string(name.substr(2)) + '=' + value);
    Weather any;
    return turn(any, wish.dials.back());
}

std::optional<Wish> wishOf(const std::vector<std::string>& words) {
    Wish wish;
    const auto seed = test::wantedSeed();
    if (!seed) {
        return std::nullopt;
    }
    wish.seed = *seed;
    for (std::size_t index = 0; index < words.size(); index += 2) {
        if (index + 1 == words.size() || !take(wish, words[index], words[index + 1])) {
            return std::nullopt;
        }
    }
    return wish;
}

int simulate(const Wish& wish) {
    const Climate climate = wish.climate.value_or(drawClimate(wish.seed));
    Weather weather = drawWeather(climate, wish.seed);
    for (const std::string& dial : wish.dials) {
        turn(weather, dial);
    }
    std::cout << "seed " << wish.seed << ", " << nameOf(climate) << ": " << printed(weather) << std::endl;
    const auto started = std::chrono::steady_clock::now();
    Year year(weather, wish.seed, wish.plant);
    if (wish.tellFrom) {
        year.tellFrom(Year::Duration(*wish.tellFrom));
    }
    year.run(Year::Duration(static_cast<long long>(wish.days * millisecondsPerDay)));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - started;
    const double passed = std::chrono::duration<double>(year.passed()).count();
    std::cout << year.report();
    std::printf("%.2f days, %llu requests in %.1f s: %.0f times as fast as time; hash %016llx\n",
                passed / 24 / 3600, static_cast<unsigned long long>(year.requests()), took.count(),
                passed / took.count(), static_cast<unsigned long long>(year.hash()));
    if (const auto finding = year.finding()) {
        std::cout << "FOUND " << *finding << "\nAgain: ./years --seed " << wish.seed << " --weather "
                  << nameOf(climate);
        for (const std::string& dial : wish.dials) {
            std::cout << " --" << dial.substr(0, dial.find('=')) << ' ' << dial.substr(dial.find('=') + 1);
        }
        if (wish.plant != Plant::None) {
            std::cout << " --plant " << nameOf(wish.plant);
        }
        std::cout << std::endl;
        return 1;
    }
    return 0;
}

} // namespace

int main(int count, char** words) {
    const std::vector<std::string> all(words + 1, words + count);
    if (!all.empty() && all.front() == "--help") {
        std::cout << usage;
        return 0;
    }
    const auto wish = wishOf(all);
    if (!wish) {
        std::cerr << usage;
        return 2;
    }
    return simulate(*wish);
}
