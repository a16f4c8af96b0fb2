#include "core/pairs/packet_builders.h"

#include "core/base/conversion.h"
#include "core/base/runtime_error.h"
#include "core/protocol/crc16.h"
#include "core/protocol/frame_image.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/point_list.h"

#include <algorithm>
#include <array>

namespace varda::inline core {
namespace {

/// How many bytes the check of a packet kind covers.
struct CheckCoverage {
    std::string_view kind;
    std::size_t fixed;     ///< bytes covered whatever the body's length; 0 covers the body
    std::size_t zerosMore; ///< zero bytes covered behind the body
};

constexpr std::array<CheckCoverage, 8> coverages = {{
    {"BIT_READ", 7, 0},
    {"WORD_READ", 7, 0},
    {"BIT_WRITE", 0, 0},
    {"WORD_WRITE", 0, 0},
    {"BIT_READ_ANS", 0, 1}, // kept: the check of an answer runs on over one zero byte behind the body
    {"WORD_READ_ANS", 0, 1},
    {"BIT_WRITE_ANS", 0, 1},
    {"WORD_WRITE_ANS", 0, 1},
}};

std::string lowByteFirst(std::string_view digits) {
    return std::string(digits.substr(2, 2)).append(digits.substr(0, 2));
}

std::string stationText(const SimFields& fields) {
    FrameImage stations(offset::command, offset::command);
    setStation(stations, offset::destination, fields.destination);
    setStation(stations, offset::source, fields.source);
    return hexRun(stations.wire(offset::command));
}

std::string addressText(const SimPosition& position, Access access) {
    const int word = registerAddress(access, position.kind, position.number);
    return lowByteFirst(access == Access::Bit ? bitAddressText(word, toInteger(position.bit, "Bit number"))
                                              : wordAddressText(word));
}

std::string countText(const SimFields& fields) { return hex(toInteger(fields.count, "Length"), 2); }

/// CMD, and behind the code of a read its LEN.
std::string readHeader(std::uint8_t code) {
    return hexRun(std::array{code, std::uint8_t{frame_size::readBody}});
}

std::string writeHeader(std::uint8_t code) { return hexRun(std::array{code}); }

std::string answerHeader(std::uint8_t code) { return writeHeader(code | answerMark); }

std::string checkedFrame(const std::string& body, std::string_view kind) {
    return body + AppendSimPacketCheck(kind, body);
}

std::string readRequest(const SimFields& fields, std::string_view header, Access access,
                        std::string_view kind) {
    const std::string address = addressText(fields.position, access);
    return checkedFrame(stationText(fields).append(header) + address + countText(fields), kind);
}

std::string readAnswer(const SimFields& fields, std::string_view header, std::string_view kind) {
    return checkedFrame(stationText(fields).append(header) + countText(fields) + fields.sendData, kind);
}

std::string pointData(std::string_view line, Access access) {
    const std::string_view value = pointValue(line);
    if (access == Access::Bit) {
        return value == "ON" ? "FF" : "00";
    }
    return advised([value] { return hexRun(bytesOfFrameText(value)); }, // typed digits may be lower case
                   [value](const RuntimeError& /*error*/) {
                       return "Value \"" + std::string(value) +
                              "\" is no hexadecimal number. Type 0 to 9 and A to F, or take out HEX.";
                   });
}

std::string writeRequest(const SimFields& fields, std::string_view header, Access access,
                         std::string_view kind) {
    const std::size_t points = fields.points.size();
    std::string body = stationText(fields).append(header);
    body += hex(static_cast<int>(points & 0xFFU), 2); // kept: the plain count stands where LEN belongs
    body += addressText(stepBack(fields.position, points, access), access);
    for (const std::string& line : fields.points) {
        body += pointData(line, access); // kept: a word goes high byte first, as it is typed
    }
    return checkedFrame(body, kind);
}

std::string acknowledgement(const SimFields& fields, std::uint8_t code, std::string_view kind) {
    const auto answerCode = static_cast<std::uint8_t>(code | answerMark);
    const auto acknowledged =
        std::array{answerCode, std::uint8_t{frame_size::acknowledgementBody}, std::uint8_t{0}};
    return checkedFrame(stationText(fields).append(hexRun(acknowledged)), kind);
}

} // namespace

Bytes bytesOfFrameText(std::string_view text) {
    auto bytes = readHexRun(text);
    return bytes ? std::move(*bytes) : throw typeMismatch();
}

std::string AppendSimPacketCheck(std::string_view kind, std::string_view body) {
    const auto* const coverage = std::ranges::find(coverages, kind, &CheckCoverage::kind);
    if (coverage == coverages.end()) {
        return {};
    }
    Bytes covered = bytesOfFrameText(body);
    covered.resize(coverage->fixed != 0 ? coverage->fixed : covered.size() + coverage->zerosMore);
    return lowByteFirst(hex(crc16(covered), 4));
}

std::string MakeSimBitReadFormat(const SimFields& fields) {
    return readRequest(fields, readHeader(command::bitRead), Access::Bit, "BIT_READ");
}

std::string MakeSimWordReadFormat(const SimFields& fields) {
    return readRequest(fields, readHeader(command::wordRead), Access::Word, "WORD_READ");
}

std::string MakeSimBitReadAnsFormat(const SimFields& fields) {
    // kept: finished as a request, so the check covers no more than the first seven bytes
    return readAnswer(fields, answerHeader(command::bitRead), "BIT_READ");
}

std::string MakeSimWordReadAnsFormat(const SimFields& fields) {
    return readAnswer(fields, answerHeader(command::wordRead),
                      "WORD_READ_ANS"); // kept: the plain count, not the number of data bytes
}

std::string MakeSimBitWriteFormat(const SimFields& fields) {
    return writeRequest(fields, writeHeader(command::bitWrite), Access::Bit, "BIT_WRITE");
}

std::string MakeSimWordWriteFormat(const SimFields& fields) {
    return writeRequest(fields, writeHeader(command::wordWrite), Access::Word, "WORD_WRITE");
}

std::string MakeSimBitWriteAnsFormat(const SimFields& fields) {
    return acknowledgement(fields, command::bitWrite, "BIT_WRITE_ANS");
}

std::string MakeSimWordWriteAnsFormat(const SimFields& fields) {
    return acknowledgement(fields, command::wordWrite, "WORD_WRITE_ANS");
}

std::string MakeSimMixedReadFormat() { return {}; }

std::string MakeSimMixedWriteFormat() { return {}; }

} // namespace varda::core
