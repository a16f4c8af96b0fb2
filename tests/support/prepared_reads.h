#pragma once

#include "core/protocol/independent_encoder.h"

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace varda::test {

/// A read request and the answer that a simulated controller gives to it.
struct PreparedRead {
    Octets request;
    Octets answer;
};

/// A frame as packet files hold it.
inline std::string frameText(const Octets& frame) {
    std::string digits;
    for (const std::uint8_t byte : frame) {
        digits += printed("%02X", byte);
    }
    return digits;
}

/// The read of one bit or word run, whose answer holds drawn data.
inline PreparedRead preparedRead(bool word, unsigned station, unsigned number, std::mt19937& engine) {
    const auto points = static_cast<unsigned>(engine() % 16 + 1);
    const unsigned address = word ? number : bitField(static_cast<int>(number), 5);
    Octets answer = {255, low(station), low(word ? 0xA3U : 0xA1U), low(points)};
    for (unsigned byte = 0; byte < (word ? 2 * points : points); ++byte) {
        answer.push_back(low(static_cast<unsigned>(engine())));
    }
    const Encoded request =
        singleRequest({"", station, ""}, {"", 255, ""}, word ? 0x23 : 0x21, address, {low(points)});
    return {request.wire, finished(answer, {}, {}).wire};
}

/// Bit and word reads in turn, no two alike, of 1 .. 16 points each.
/// @param count at most 256 stations of 3584 registers
inline std::vector<PreparedRead> preparedReads(std::size_t count, unsigned seed) {
    constexpr std::size_t registers = 3584;
    std::mt19937 engine(seed);
    std::vector<PreparedRead> reads;
    reads.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        reads.push_back(preparedRead(index % 2 == 1, static_cast<unsigned>(index / registers),
                                     static_cast<unsigned>(index % registers), engine));
    }
    return reads;
}

/// The file from which a simulated controller loads them.
inline std::string packetFile(const std::vector<PreparedRead>& reads) {
    std::string requests = "[Information]\r\nTotal=" + std::to_string(reads.size()) + "\r\n[Receive]\r\n";
    std::string answers = "[Send]\r\n";
    for (std::size_t row = 0; row < reads.size(); ++row) {
        requests += std::to_string(row) + "=" + frameText(reads[row].request) + "\r\n";
        answers += std::to_string(row) + "=" + frameText(reads[row].answer) + "\r\n";
    }
    return requests + answers;
}

} // namespace varda::test
