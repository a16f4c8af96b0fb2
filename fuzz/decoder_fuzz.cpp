#include "core/insight/decoder.h"
#include "core/insight/field_words.h"
#include "core/insight/frame_remarks.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>

/// Any bytes as a request and a burst that may be its answer. The fields of every frame have to cover it, in
/// order, and everything has to have words.
namespace {

using namespace varda;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void requireCovered(const DecodedFrame& frame, std::size_t size) {
    std::size_t next = frame.begin;
    for (const Field& field : frame.fields) {
        require(field.place == next && field.length > 0 && field.length <= field.whole);
        require(!fieldInWords(frame, field).empty());
        next += field.length;
    }
    require(next <= size && frame.end <= next);
    for (const Fault fault : frame.faults) {
        require(!faultInWords(frame, fault).empty());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span all(data, size);
    const std::size_t asked = size > 0 ? std::min<std::size_t>(data[0], size - 1) : 0;
    const auto request = size > 0 ? all.subspan(1, asked) : all;
    const auto burst = size > 0 ? all.subspan(1 + asked) : all;
    const auto frames = decodeBurst(burst, request);
    require(frames.empty() == burst.empty());
    std::size_t next = 0;
    for (const DecodedFrame& frame : frames) {
        require(frame.begin >= next);
        requireCovered(frame, size);
        next = frame.end;
        pointsOf(runsOf(frame));
    }
    remarksOnAnswer(burst, request);
    return 0;
}
