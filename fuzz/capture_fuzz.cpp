#include "core/insight/pcapng.h"
#include "core/recordings/capture_reader.h"
#include "core/recordings/recording.h"
#include "input.h"

#include <algorithm>
#include <chrono>

/// Any bytes as a capture: it is read, or refused with what is wrong. What is written as one reads back.
namespace {

using namespace varda;
using fuzz::require;

void readAny(const std::string& file) {
    const auto read = fuzz::attempt({13}, [&file] { return readCapture(file); });
    if (!read) {
        return;
    }
    std::size_t bytes = 0;
    for (const RecordedBurst& burst : read->recording) {
        bytes += burst.bytes.size();
    }
    require(bytes <= file.size(), "no more is read than there is");
    for (const RecordedExchange& exchange : exchangesOf(read->recording)) {
        require(answerLengthOf(exchange.request) >= 0, "a length is no negative number");
    }
}

void readBack(fuzz::Input& input) {
    std::string file = captureHeading();
    Recording written;
    for (int left = input.below(6); left > 0; --left) {
        const std::chrono::system_clock::time_point time(std::chrono::microseconds(input.below(65'535)));
        written.push_back({time, input.flag(), input.bytes(300)});
        const RecordedBurst& burst = written.back();
        file += captured({burst.time, burst.isSent, burst.bytes, burst.bytes.size(), input.text(40)});
    }
    std::stable_sort(
        written.begin(), written.end(), [](const RecordedBurst& one, const RecordedBurst& other) {
            return one.time <
                   other.time; // as the packets of a capture are read, whatever their order in the file
        });
    const ReadCapture read = readCapture(file);
    require(read.recording == written && !read.isCut && read.incomplete == 0, "what was written is read");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    if (input.flag()) {
        readBack(input);
    } else {
        readAny(input.rest());
        readAny(captureHeading() + input.rest());
    }
    return 0;
}
