#pragma once

#include "years/random.h"
#include "years/weather.h"

namespace varda::years {

/// What a weather makes happen by chance. Once it is healed nothing goes wrong any more.
struct Sky {
    Weather weather;
    Random random;
    bool isHealed = false;

    bool strikes(int Weather::*fault) { return !isHealed && random.perMillion(weather.*fault); }
};

} // namespace varda::years
