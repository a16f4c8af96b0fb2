#include "cli/decode_command.h"

#include "core/base/blanks.h"
#include "core/insight/decoder.h"
#include "core/protocol/hex_text.h"

#include <algorithm>
#include <istream>
#include <ranges>

namespace varda::cli {
namespace {

constexpr std::string_view fromInput = "-";

/// Digits with or without blanks between the bytes. @throws Failure Usage
Bytes bytesOf(const std::string& text) {
    std::string digits = text;
    std::erase_if(digits,
                  [](char character) { return character == ' ' || character == '\t' || character == '\r'; });
    const std::optional<Bytes> bytes = readHexRun(digits);
    if (!bytes) {
        constexpr std::size_t shown = 40;
        throw Failure(ExitCode::Usage,
                      '"' + text.substr(0, shown) + "\" is no frame: two hexadecimal digits for each byte.");
    }
    return *bytes;
}

} // namespace

void DecodeCommand::declare(CLI::App& app) {
    app.add_option("frame", frames_, "Hexadecimal digits of a burst; - reads bursts, one a line")->required();
    app.add_option("--request", request_, "The request that an answer belongs to: names its registers");
}

ExitCode DecodeCommand::run(const Streams& streams, Report& report) {
    const Bytes request = bytesOf(request_);
    bool isEachSound = true;
    if (frames_.size() == 1 && frames_.front() == fromInput) {
        for (std::string line; std::getline(streams.in, line);) {
            isEachSound = decode(line, request, report) && isEachSound;
        }
    } else {
        std::string text;
        for (const std::string& part : frames_) {
            text += part + ' ';
        }
        if (bytesOf(text).empty()) {
            throw Failure(ExitCode::Usage, "No frame is given. Write two hexadecimal digits for each byte.");
        }
        isEachSound = decode(text, request, report);
    }
    return isEachSound ? ExitCode::Right : ExitCode::Failed;
}

bool DecodeCommand::decode(const std::string& text, const Bytes& request, Report& report) const {
    const Bytes bytes = bytesOf(text);
    const std::vector<DecodedFrame> frames = decodeBurst(bytes, request);
    for (const DecodedFrame& frame : frames) {
        report.frame(bytes, frame);
    }
    return std::ranges::all_of(frames, &DecodedFrame::isSound);
}

} // namespace varda::cli
