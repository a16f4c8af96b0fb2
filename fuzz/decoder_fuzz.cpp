#include "core/insight/coverage.h"
#include "core/insight/decoder.h"
#include "core/insight/frame_remarks.h"
#include "input.h"

#include <algorithm>
#include <cstdint>
#include <span>

/// Any bytes as a request and a burst that may be its answer. The fields of every frame have to cover it, in
/// order, and everything has to have words.
namespace {

using namespace varda;
using fuzz::require;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span all(data, size);
    const std::size_t asked = size > 0 ? std::min<std::size_t>(data[0], size - 1) : 0;
    const auto request = size > 0 ? all.subspan(1, asked) : all;
    const auto burst = size > 0 ? all.subspan(1 + asked) : all;
    const auto frames = decodeBurst(burst, request);
    require(frames.empty() == burst.empty(), "there is a frame where there is a byte");
    require(test::flawOfCoverage(frames, burst.size()).empty(), "frames cover the burst");
    require(test::flawOfCoverage({decode(burst, request)}, burst.size()).empty(), "one frame covers it");
    for (const DecodedFrame& frame : frames) {
        pointsOf(runsOf(frame));
    }
    remarksOnAnswer(burst, request);
    return 0;
}
