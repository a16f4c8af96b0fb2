#include "core/base/runtime_error.h"
#include "core/protocol/frame.h"
#include "core/protocol/mixed_requests.h"
#include "core/protocol/point_list.h"
#include "core/protocol/single_requests.h"
#include "input.h"

/// Any lines as point lists, any numbers in the fields of a single request: what goes out is a frame.
namespace {

using namespace varda;
using fuzz::require;

void requireFrame(const Bytes& wire, std::size_t behind) {
    const auto frame = parse(wire);
    require(frame.has_value(), "LEN and check of a request are right");
    require(frame->size() + behind == wire.size(), "it has the bytes that LEN says");
}

template <typename Make>
void make(Make&& making) {
    fuzz::attempt({6, 9, 13}, making);
}

std::vector<std::string> linesOf(fuzz::Input& input) {
    std::vector<std::string> lines;
    while (!input.isEmpty() && lines.size() < 150) {
        lines.push_back(input.flag() ? input.text(30)
                        : input.flag()
                            ? bitPointLine(input.text(2), std::to_string(input.below(40'000)),
                                           std::to_string(input.below(300)), input.flag() ? "ON" : "2")
                            : wordPointLine(input.text(2), std::to_string(input.below(40'000)),
                                            std::to_string(input.below(300))));
    }
    return lines;
}

void makeSingles(FrameImages& images, fuzz::Input& input) {
    const Access access = input.flag() ? Access::Word : Access::Bit;
    setStation(images.read, offset::destination, input.text(4));
    setReadCount(images, input.below(65'536) - 100);
    MakeReadFormat(images, access);
    requireFrame(readWire(images), 0);
    images.write.reset(offset::length, 1023);
    setWriteCount(images, access, input.below(writeLimit(access)) + 1);
    setWriteWord(images, static_cast<std::size_t>(input.below(16)), input.below(65'536));
    MakeWriteFormat(images, access, framedWriteCount(images, access));
    requireFrame(writeWire(images), 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    FrameImages images;
    make([&] { makeSingles(images, input); });
    const StationTexts stations = {input.text(4), input.text(4)};
    const std::vector<std::string> lines = linesOf(input);
    make([&] {
        MakeMRDataFormat(images, lines);
        MakeMReadFormat(images, stations, lines);
        requireFrame(mixedWire(images, command::mixedRead), 1);
        GetMRAnswerLength(lines);
    });
    make([&] {
        MakeMWDataFormat(images, lines);
        MakeMWriteFormat(images, stations, lines);
        requireFrame(mixedWire(images, command::mixedWrite), 1);
    });
    return 0;
}
