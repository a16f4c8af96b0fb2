#include "core/insight/trace_words.h"

#include "core/insight/field_words.h"
#include "core/insight/verdict_words.h"
#include "core/protocol/hex_text.h"

#include <cstdio>
#include <ctime>

namespace varda::inline core {
namespace {

using namespace std::chrono;

template <typename Words>
std::string joined(const TraceLine& line, Words&& words) {
    std::string text;
    for (const DecodedFrame& frame : framesOf(line)) {
        const std::string next = words(frame);
        text += (text.empty() || next.empty() ? "" : ", ") + next;
    }
    return text;
}

std::string stations(const DecodedFrame& frame) {
    const Field* const destination = frame.find(FieldRole::Destination);
    const Field* const source = frame.find(FieldRole::Source);
    if (frame.kind.command == nullptr || source == nullptr) {
        return {};
    }
    return std::to_string(source->number) + " to " + std::to_string(destination->number);
}

std::string_view eventInWords(Verdict verdict) {
    switch (verdict) {
    case Verdict::Opened:
        return "port opened";
    case Verdict::Closed:
        return "port closed";
    case Verdict::HungUp:
        return "hang-up";
    case Verdict::Silence:
        return "silence";
    case Verdict::OnPurpose:
        return "fault on purpose";
    default:
        return "event without bytes";
    }
}

std::string_view directionInWords(Direction direction) {
    switch (direction) {
    case Direction::Sent:
        return "sent";
    case Direction::Received:
        return "received";
    default:
        return "event";
    }
}

std::string bytesInWords(const TraceLine& line) {
    const std::string text = hexSpaced(line.bytes);
    return line.size > line.bytes.size()
               ? text + " and " + counted(line.size - line.bytes.size(), "byte") + " more"
               : text;
}

std::string printed(const char* format, double number) {
    std::array<char, 32> text = {};
    std::snprintf(text.data(), text.size(), format, number);
    return text.data();
}

std::string strftimed(const char* format, const std::tm& time) {
    std::array<char, 40> text = {};
    return {text.data(), std::strftime(text.data(), text.size(), format, &time)};
}

} // namespace

std::string_view columnName(TraceColumn column) {
    constexpr std::array<std::string_view, traceColumns.size()> names = {
        "Time", "Delta ms", "Direction", "Kind", "Station", "Registers", "Bytes", "What became of it"};
    return names.at(static_cast<std::size_t>(column));
}

std::string timeInWords(system_clock::time_point time) {
    const auto whole = floor<seconds>(time);
    const std::time_t stamp = system_clock::to_time_t(whole);
    const std::tm* const local = std::localtime(&stamp); // the interface thread's alone
    const auto rest = duration_cast<milliseconds>(time - whole).count();
    return local != nullptr ? strftimed("%H:%M:%S.", *local) + decimal(static_cast<int>(rest), 3)
                            : std::string();
}

std::string universalTime(system_clock::time_point time) {
    const auto whole = floor<seconds>(time);
    const std::time_t stamp = system_clock::to_time_t(whole);
    const std::tm* const universal = std::gmtime(&stamp);
    const auto rest = duration_cast<microseconds>(time - whole).count();
    return universal != nullptr
               ? strftimed("%Y-%m-%dT%H:%M:%S.", *universal) + decimal(static_cast<int>(rest), 6) + 'Z'
               : std::string();
}

double deltaOf(const Trace& trace, Trace::Number number) {
    const TraceLine* const line = trace.find(number);
    const TraceLine* const before = number > trace.begin() ? trace.find(number - 1) : nullptr;
    return line != nullptr && before != nullptr
               ? duration<double, std::milli>(line->first - before->first).count()
               : 0;
}

std::string kindOfLine(const TraceLine& line) {
    return line.direction == Direction::Event
               ? std::string(eventInWords(line.verdict))
               : joined(line, [](const DecodedFrame& frame) {
                     return (frame.isPart ? "part of " : "") + kindInWords(frame.kind);
                 });
}

std::string cellInWords(const Trace& trace, Trace::Number number, TraceColumn column,
                        const RegisterNames& names) {
    const TraceLine* const line = trace.find(number);
    if (line == nullptr) {
        return {};
    }
    switch (column) {
    case TraceColumn::Time:
        return timeInWords(line->timeOfDay);
    case TraceColumn::Delta:
        return printed("%.3f", deltaOf(trace, number));
    case TraceColumn::Direction:
        return std::string(directionInWords(line->direction));
    case TraceColumn::Kind:
        return kindOfLine(*line);
    case TraceColumn::Station:
        return joined(*line, stations);
    case TraceColumn::Registers:
        return joined(*line,
                      [&names](const DecodedFrame& frame) { return runsInWords(runsOf(frame), names); });
    case TraceColumn::Hex:
        return bytesInWords(*line);
    default:
        return verdictInWords(trace, number);
    }
}

} // namespace varda::core
