#include "support/sanitized.h"
#include "years/year.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varda::years {
namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t seed = 20261122;
constexpr auto aDay = std::chrono::milliseconds(24h);

struct Ended {
    std::uint64_t hash;
    std::string report;
};

Ended simulated(Climate climate, std::uint64_t drawnBy, std::chrono::milliseconds time = aDay) {
    Year year(drawWeather(climate, drawnBy), drawnBy);
    year.run(time);
    EXPECT_EQ(year.finding().value_or(""), "");
    const std::string report = year.report();
    return {year.hash(), report.substr(0, report.find("memory"))};
}

class EveryWeather : public testing::TestWithParam<Climate> {};

TEST_P(EveryWeather, ReplaysToTheByte) {
    const Ended once = simulated(GetParam(), seed);
    const Ended again = simulated(GetParam(), seed);
    EXPECT_EQ(once.hash, again.hash);
    EXPECT_EQ(once.report, again.report);
}

TEST_P(EveryWeather, IsAnotherOneWithAnotherSeed) {
    EXPECT_NE(simulated(GetParam(), seed, 1h).hash, simulated(GetParam(), seed + 1, 1h).hash);
}

TEST_P(EveryWeather, IsPrintedWhole) {
    const Weather weather = drawWeather(GetParam(), seed);
    const std::string text = printed(weather);
    Weather typed;
    for (const Dial& dial : dials()) {
        const std::string option = "--" + std::string(dial.name) + ' ';
        const std::size_t place = text.find(option);
        ASSERT_NE(place, std::string::npos) << dial.name;
        const std::string value = text.substr(place + option.size());
        EXPECT_TRUE(turn(typed, std::string(dial.name) + '=' + value.substr(0, value.find(' '))));
        EXPECT_EQ(typed.*dial.value, weather.*dial.value) << dial.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Years, EveryWeather,
                         testing::Values(Climate::Sunny, Climate::Stormy, Climate::Radioactive),
                         [](const auto& which) { return std::string(nameOf(which.param)); });

TEST(Weather, IsFaultlessWhereTheSunShines) {
    for (std::uint64_t drawnBy = 0; drawnBy < 20; ++drawnBy) {
        EXPECT_TRUE(drawWeather(Climate::Sunny, drawnBy).isFaultless());
    }
}

/// Where nothing went wrong, nothing would have been tried.
TEST(Weather, BringsEachOfItsFaults) {
    constexpr std::size_t radioactive = 2;
    Weather weather = drawWeather(Climate::Radioactive, seed);
    for (const Dial& dial : dials()) {
        const bool isRoom = dial.value == &Weather::inputRoom || dial.value == &Weather::outputRoom;
        const Dial::Range& range = dial.ranges[radioactive];
        weather.*dial.value = !dial.isFault ? weather.*dial.value : isRoom ? range.least : range.most / 2;
    }
    Year year(weather, seed);
    year.run(aDay);
    EXPECT_EQ(year.finding().value_or(""), "");
    const Faults& faults = year.faults();
    for (const std::uint64_t Faults::*const fault :
         {&Faults::altered, &Faults::lost, &Faults::doubled, &Faults::babbled, &Faults::split,
          &Faults::overflown, &Faults::unheard, &Faults::unsent, &Faults::refused, &Faults::hangUps}) {
        EXPECT_GT(faults.*fault, 0U) << year.report();
    }
    EXPECT_GT(year.healings(), 0U);
}

TEST(Weather, LetsEachRequestBeAnsweredWhereTheSunShines) {
    Year year(drawWeather(Climate::Sunny, seed), seed);
    year.run(aDay);
    EXPECT_EQ(year.finding().value_or(""), "");
    EXPECT_GT(year.answeredScenes(), 0U);
    EXPECT_GT(year.healings(), 0U);
    const Faults& faults = year.faults();
    EXPECT_EQ(faults.altered + faults.lost + faults.doubled + faults.babbled + faults.split +
                  faults.overflown + faults.unsent + faults.refused + faults.hangUps,
              0U)
        << year.report();
}

TEST(Weather, LeavesSomeFaultsOff) {
    int off = 0;
    int on = 0;
    for (std::uint64_t drawnBy = 0; drawnBy < 20; ++drawnBy) {
        (drawWeather(Climate::Stormy, drawnBy).noise == 0 ? off : on) += 1;
    }
    EXPECT_GT(off, 0);
    EXPECT_GT(on, 0);
}

TEST(Weather, TurnsNoDialThatItDoesNotHave) {
    Weather weather;
    for (const char* const setting : {"", "noise", "noise=", "noise=x", "noise=-1", "nose=1", "baud=0"}) {
        EXPECT_FALSE(turn(weather, setting)) << setting;
    }
    EXPECT_TRUE(turn(weather, "noise=12"));
    EXPECT_EQ(weather.noise, 12);
}

/// A fault that is planted, and the words by which it is found.
struct Planted {
    Plant plant;
    std::string words;
};

class Canary : public testing::TestWithParam<Planted> {};

TEST_P(Canary, IsFound) {
    if (isSanitized && GetParam().plant == Plant::Leak) {
        GTEST_SKIP() << "a sanitizer keeps freed memory itself";
    }
    Year year(drawWeather(Climate::Sunny, seed), seed, GetParam().plant);
    year.run(60 * aDay);
    EXPECT_NE(year.finding().value_or("").find(GetParam().words), std::string::npos)
        << year.finding().value_or("nothing was found");
}

INSTANTIATE_TEST_SUITE_P(Years, Canary,
                         testing::Values(Planted{Plant::Altered, "the bytes sent are not the frame shown"},
                                         Planted{Plant::Invented, "what is shown did not come over the line"},
                                         Planted{Plant::Withheld,
                                                 "a request went out before the last one had its outcome"},
                                         Planted{Plant::LostWait, "the link is stuck in a reception"},
                                         Planted{Plant::Leak, "memory grows"}),
                         [](const auto& which) { return "Number" + std::to_string(which.index); });

} // namespace
} // namespace varda::years
