#include "core/protocol/crc16.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/mixed_requests.h"
#include "core/protocol/point_list.h"
#include "turns.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

/// What the longest mixed requests take from the lines of their points to the text that is shown and the
/// bytes that are sent; beside the bytes of that length copied, checked and made into a text.
namespace {

using namespace varda;
using Steady = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr int calls = 2000;
const StationTexts stations = {"16", "17"}; // of two digits, as all other bytes

/// One frame, from its lines to its text and its bytes.
struct Frame {
    FrameImages images;
    std::vector<std::string> lines;
    std::string text;
    Bytes wire;
};

void buildRead(Frame& frame) {
    MakeMRDataFormat(frame.images, frame.lines, {});
    MakeMReadFormat(frame.images, stations, frame.lines);
    frame.text = DisplayMRString(frame.images);
    frame.wire = mixedWire(frame.images, command::mixedRead);
}

void buildWrite(Frame& frame) {
    MakeMWDataFormat(frame.images, frame.lines, {});
    MakeMWriteFormat(frame.images, stations, frame.lines);
    frame.text = DisplayMWString(frame.images);
    frame.wire = mixedWire(frame.images, command::mixedWrite);
}

/// As the text shows it, without the byte that goes along behind the frame.
void buildBare(Frame& frame, const Bytes& built) {
    frame.wire = built;
    const std::size_t checked = built.size() - frame_size::check - 1;
    const std::uint16_t check = crc16(std::span(frame.wire).first(checked));
    frame.wire[checked] = static_cast<std::uint8_t>(check & 0xFFU);
    frame.wire[checked + 1] = static_cast<std::uint8_t>(check >> 8U);
    frame.text = hexGroups(std::span(frame.wire).first(checked + frame_size::check));
}

template <typename Build>
double timeOf(const Build& build) {
    return bench::leastTime([&] {
               for (int call = 0; call < calls; ++call) {
                   build();
               }
           }) *
           1000 / calls;
}

/// A line for as many bits as a request takes.
std::vector<std::string> manyBits() { return {bitPointLine("R", "0000", "0", "127")}; }

/// A line for each.
std::vector<std::string> writtenBits() {
    constexpr int most = 84;
    std::vector<std::string> lines;
    for (int bit = 0; bit < most; ++bit) {
        lines.push_back(bitPointLine("R", "0000", std::to_string(bit % 16), bit % 2 == 0 ? "ON" : "OFF"));
    }
    return lines;
}

void measure(const std::string& what, std::vector<std::string> lines, void (*build)(Frame&)) {
    Frame ours;
    ours.lines = std::move(lines);
    build(ours);
    Frame bare;
    const Bytes wire = ours.wire;
    buildBare(bare, wire);
    if (bare.text != ours.text || bare.wire != ours.wire) {
        throw std::runtime_error("The two frames differ.");
    }
    bench::print(what + " of " + std::to_string(wire.size() - 1) +
                     " bytes, from its points to text and bytes",
                 "copy, check and text of its bytes", "µs",
                 bench::byTurns([&] { return timeOf([&] { build(ours); }); },
                                [&] { return timeOf([&] { buildBare(bare, wire); }); }));
}

} // namespace

int main() try {
    measure("longest mixed read", manyBits(), buildRead);
    measure("longest mixed write", writtenBits(), buildWrite);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
