#include "core/insight/frame_reading.h"
#include "core/insight/pcapng.h"
#include "core/insight/trace.h"
#include "core/insight/trace_export.h"
#include "core/protocol/crc16.h"
#include "core/protocol/frame.h"
#include "input.h"

#include <array>
#include <vector>

/// Any bytes as a frame, as what a byte's tip says, and as a line of the trace in all of its exports.
namespace {

using namespace varda;
using fuzz::require;

void requireFrame(const Bytes& bytes) {
    if (const auto frame = parse(bytes)) {
        require(frame->size() <= bytes.size(), "a frame lies in its bytes");
        const auto checked = std::span(bytes).first(frame->size() - frame_size::check);
        require(crc16(checked) == lowHigh(bytes, checked.size()), "its check is right");
    }
}

void exportLine(const Bytes& bytes, const Bytes& request, fuzz::Input& input) {
    Trace trace;
    TraceLine line;
    line.direction = static_cast<Direction>(input.below(3));
    line.verdict = static_cast<Verdict>(input.below(verdictCount));
    line.bytes = bytes;
    line.size = bytes.size();
    line.request = std::make_shared<const Bytes>(request);
    const std::vector numbers = {trace.append(line)};
    for (const TraceForm form : {TraceForm::Text, TraceForm::Csv, TraceForm::JsonLines, TraceForm::Pcapng}) {
        std::size_t size = 0;
        exportTrace(trace, numbers, form, noNames(), [&size](std::string_view part) { size += part.size(); });
        require(form != TraceForm::Pcapng || size % 4 == 0, "blocks of a capture are whole");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const Bytes request = input.bytes(300);
    const Bytes bytes = input.bytes(600);
    requireFrame(bytes);
    for (std::size_t index = 0; index < bytes.size(); index += 1 + bytes.size() / 16) {
        require(!byteInWords(bytes, index, request).empty(), "every byte says something");
    }
    exportLine(bytes, request, input);
    return 0;
}
