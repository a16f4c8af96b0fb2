#pragma once

#include "core/insight/pcapng.h"
#include "core/protocol/frame_text.h"
#include "core/recordings/recording.h"

#include <chrono>
#include <string>

namespace varda::test {

using namespace std::chrono_literals;

inline const std::chrono::system_clock::time_point recordingBegin{1'800'000'000s};

inline const Bytes wordRequest = bytesOfText("FF 00 23 03 64 02 04 90 F0 ");
inline const Bytes wordAnswer = bytesOfText("00 FF A3 08 00 00 00 00 00 00 00 00 C6 58 ");
inline const Bytes bitRequest = bytesOfText("FF FF 21 03 00 00 08 BD 85 ");

inline RecordedBurst sentAt(std::chrono::microseconds time, const Bytes& bytes) {
    return {recordingBegin + time, true, bytes};
}
inline RecordedBurst receivedAt(std::chrono::microseconds time, const Bytes& bytes) {
    return {recordingBegin + time, false, bytes};
}

/// The recording as the program writes it down.
inline std::string captureOf(const Recording& recording) {
    std::string text = captureHeading();
    for (const RecordedBurst& burst : recording) {
        text += captured({burst.time, burst.isSent, burst.bytes, burst.bytes.size(), "a remark"});
    }
    return text;
}

inline Bytes joined(const Bytes& first, const Bytes& second) {
    Bytes both = first;
    both.insert(both.end(), second.begin(), second.end());
    return both;
}

} // namespace varda::test
