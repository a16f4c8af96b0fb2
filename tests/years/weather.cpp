#include "years/weather.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace varda::years {
namespace {

constexpr std::array<std::string_view, 3> climates = {"sunny", "stormy", "radioactive"};
constexpr std::array<int, 5> bauds = {2400, 4800, 9600, 19'200, 38'400};

constexpr Dial::Range never = {0, 0};

/// In the order in which they are drawn and printed.
constexpr std::array<Dial, 24> table = {{
    {"baud", &Weather::baud, false, {{0, 4}, {0, 4}, {0, 4}}}, // one of those above
    {"latency", &Weather::latency, false, {{0, 5}, {0, 60}, {0, 400}}},
    {"chunk", &Weather::chunk, true, {never, {8, 64}, {8, 64}}},
    {"splits", &Weather::splits, true, {never, {1000, 100'000}, {10'000, 500'000}}},
    {"pause", &Weather::pause, false, {never, {1, 200}, {50, 400}}},
    {"noise", &Weather::noise, true, {never, {10, 2000}, {500, 20'000}}},
    {"lost", &Weather::lost, true, {never, {10, 2000}, {500, 20'000}}},
    {"doubled", &Weather::doubled, true, {never, {10, 2000}, {500, 20'000}}},
    {"babble", &Weather::babble, true, {never, {100, 10'000}, {5000, 200'000}}},
    {"silence", &Weather::silence, true, {never, {100, 20'000}, {10'000, 300'000}}},
    {"late", &Weather::late, true, {never, {100, 20'000}, {10'000, 300'000}}},
    {"late-by", &Weather::lateBy, false, {never, {100, 3000}, {100, 20'000}}},
    {"input-room", &Weather::inputRoom, true, {never, {64, 4096}, {16, 512}}},
    {"output-room", &Weather::outputRoom, true, {never, {256, 4096}, {16, 512}}},
    {"refused-writes", &Weather::refusedWrites, true, {never, {10, 2000}, {1000, 50'000}}},
    {"failed-reads", &Weather::failedReads, true, {never, {10, 2000}, {1000, 50'000}}},
    {"failed-opens", &Weather::failedOpens, true, {never, {1000, 100'000}, {10'000, 300'000}}},
    {"hang-ups", &Weather::hangUps, true, {never, {10, 1000}, {500, 20'000}}},
    {"clumsiness", &Weather::clumsiness, true, {{0, 5000}, {1000, 50'000}, {10'000, 300'000}}},
    {"strangers", &Weather::strangers, true, {never, {10'000, 300'000}, {10'000, 500'000}}},
    {"insight", &Weather::insight, false, {{30'000, 60'000}, {30'000, 60'000}, {30'000, 60'000}}},
    {"shortest-period", &Weather::shortestPeriod, false, {{100, 100}, {100, 100}, {100, 100}}},
    {"longest-period",
     &Weather::longestPeriod,
     false,
     {{60'000, 60'000}, {60'000, 60'000}, {60'000, 60'000}}},
    {"scene", &Weather::scene, false, {{50, 400}, {50, 400}, {50, 400}}},
}};

/// Every other fault is off in a storm, one of four under radiation.
bool isOff(const Dial& dial, Climate climate, Random& random) {
    return dial.isFault && (climate == Climate::Radioactive ? random.oneIn(4) : random.oneIn(2));
}

/// Without a rate, a period or a scene nothing goes on.
int leastOf(const Dial& dial) {
    constexpr std::array<int Weather::*, 4> needed = {&Weather::baud, &Weather::shortestPeriod,
                                                      &Weather::longestPeriod, &Weather::scene};
    return std::ranges::find(needed, dial.value) != needed.end() ? 1 : 0;
}

} // namespace

std::span<const Dial> dials() { return table; }

std::string_view nameOf(Climate climate) { return climates.at(static_cast<std::size_t>(climate)); }

bool Weather::isFaultless() const {
    return std::ranges::all_of(table, [this](const Dial& dial) {
        return !dial.isFault || dial.value == &Weather::clumsiness || this->*dial.value == 0;
    });
}

Climate drawClimate(std::uint64_t seed) { return static_cast<Climate>(Random(seed ^ 1U).below(3)); }

Weather drawWeather(Climate climate, std::uint64_t seed) {
    Random random(seed ^ (static_cast<std::uint64_t>(climate) + 2) << 32U);
    Weather weather;
    for (const Dial& dial : table) {
        const Dial::Range range = dial.ranges[static_cast<std::size_t>(climate)];
        const int drawn = random.between(range.least, range.most);
        weather.*dial.value = isOff(dial, climate, random) ? 0 : drawn;
    }
    weather.baud = bauds.at(static_cast<std::size_t>(weather.baud));
    return weather;
}

bool turn(Weather& weather, std::string_view setting) {
    const std::string_view name = setting.substr(0, setting.find('='));
    const std::string_view text = setting.substr(std::min(setting.size(), name.size() + 1));
    const auto* const dial = std::ranges::find(table, name, &Dial::name);
    int value = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (dial == table.end() || text.empty() || error != std::errc{} || stop != text.data() + text.size() ||
        value < leastOf(*dial)) {
        return false;
    }
    weather.*dial->value = value;
    return true;
}

std::string printed(const Weather& weather) {
    std::string text;
    for (const Dial& dial : table) {
        text += (text.empty() ? "--" : " --") + std::string(dial.name) + ' ' +
                std::to_string(weather.*dial.value);
    }
    return text;
}

} // namespace varda::years
