#include "core/base/conversion.h"
#include "core/base/runtime_error.h"
#include "core/link/mscomm.h"
#include "core/link/period.h"
#include "core/protocol/frame_text.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/pasted_words.h"
#include "core/runs/scenario_frame.h"
#include "core/runs/scenario_run.h"
#include "input.h"

#include <optional>

/// Any text where a number, a frame or words are typed or pasted: it is read, or refused with a number.
namespace {

using namespace varda;
using fuzz::require;

template <typename Reading>
auto read(Reading&& reading) {
    return fuzz::attempt({6, 9, 13, 380}, reading);
}

void readNumbers(const std::string& text) {
    const auto hexadecimal = read([&] { return fromHex(text); });
    require(!hexadecimal || (*hexadecimal >= 0 && *hexadecimal <= 65535), "four digits");
    require(!hexadecimal || fromHex(hex(*hexadecimal)) == *hexadecimal, "a number reads back");
    read([&] { return static_cast<int>(byteFromHex(text)); });
    const auto integer = read([&] { return static_cast<int>(toInteger(text)); });
    require(integer == (readInteger(text) ? std::optional<int>(*readInteger(text)) : std::nullopt),
            "both readings agree");
    const auto wide = read([&] { return toLong(text); });
    require(!integer || wide == *integer, "the wider reading agrees");
    const int period = periodOf(text);
    require(period >= shortestPeriod && period <= longestPeriod, "a period is in range");
    read([&] { return scenarioPeriod(text); });
}

void readFrames(const std::string& text) {
    if (const auto bytes = readHexRun(text)) {
        require(readHexRun(hexRun(*bytes)) == bytes, "a run reads back");
        require(bytesOfText(hexGroups(*bytes)) == *bytes, "groups read back");
    }
    bytesOfText(text);
    require(text.empty() || byteAt(text, text.size() - 1) <= text.size(), "a place lies in the text");
    if (const auto frame = read([&] { return scenarioFrame(text); })) {
        read([&] { return scenarioAnswerLength(*frame).value_or(0); });
    }
}

void readWords(const std::string& text) {
    const auto words = pastedWords(text);
    for (const PastedWord& word : words) {
        require(!word.value || (*word.value >= 0 && *word.value <= 65535), "a word has 16 bits");
    }
    const WordsThatFit fit = fitWords(words, text.size() % 130);
    require(fit.words.size() <= fit.offered, "no more fit than were offered");
    require(fit.isAll() || !fitInWords(fit).empty(), "what does not fit is told");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = fuzz::Input(data, size).rest();
    readNumbers(text);
    readFrames(text);
    readWords(text);
    MSComm port([](const std::string&) { return nullptr; });
    read([&] {
        port.setSettings(text);
        return 0;
    });
    return 0;
}
