#include "core/insight/trace_export.h"

#include "core/insight/csv_field.h"
#include "core/insight/pcapng.h"
#include "core/insight/trace_words.h"
#include "core/insight/verdict_words.h"
#include "core/protocol/hex_text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace varda::inline core {
namespace {

constexpr std::string_view csvEnd = "\r\n";

/// Widths of the text's columns, as their contents usually need them; the last one has what is left.
std::size_t widthOf(TraceColumn column) {
    switch (column) {
    case TraceColumn::Time:
        return 13;
    case TraceColumn::Delta:
    case TraceColumn::Direction:
        return 10;
    case TraceColumn::Kind:
        return 22;
    case TraceColumn::Station:
        return 11;
    case TraceColumn::Registers:
        return 20;
    case TraceColumn::Hex:
        return 32;
    default:
        return 0;
    }
}

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size() + 1, width), ' ');
    return text;
}

template <typename Cell>
std::string textLine(Cell&& cell) {
    std::string line;
    for (const TraceColumn column : traceColumns) {
        line += padded(cell(column), widthOf(column));
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

template <typename Cell>
std::string csvLine(Cell&& cell) {
    std::string line;
    for (const TraceColumn column : traceColumns) {
        line += csvField(cell(column)) + ',';
    }
    line.pop_back();
    return line.append(csvEnd);
}

std::string heading(TraceForm form) {
    const auto name = [](TraceColumn column) { return std::string(columnName(column)); };
    switch (form) {
    case TraceForm::Text:
        return textLine(name);
    case TraceForm::Csv:
        return csvLine(name);
    case TraceForm::Pcapng:
        return captureHeading();
    default:
        return {};
    }
}

std::string jsonLine(const Trace& trace, Trace::Number number, const RegisterNames& names) {
    using Json = nlohmann::ordered_json;
    const TraceLine& line = *trace.find(number);
    const auto cell = [&](TraceColumn column) { return cellInWords(trace, number, column, names); };
    const Json object = {{"number", number},
                         {"time", universalTime(line.timeOfDay)},
                         {"deltaMs", deltaOf(trace, number)},
                         {"direction", cell(TraceColumn::Direction)},
                         {"kind", cell(TraceColumn::Kind)},
                         {"stations", cell(TraceColumn::Station)},
                         {"registers", cell(TraceColumn::Registers)},
                         {"size", line.size},
                         {"bytes", hexRun(line.bytes)},
                         {"wrong", trace.isWrong(number)},
                         {"verdict", cell(TraceColumn::Verdict)}};
    // names come from files of any encoding
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string hexLine(const TraceLine& line) {
    return line.bytes.empty() ? std::string() : hexSpaced(line.bytes) + '\n';
}

std::string packet(const Trace& trace, Trace::Number number) {
    const TraceLine& line = *trace.find(number);
    if (line.bytes.empty() || line.verdict == Verdict::NotSent) {
        return {};
    }
    return captured({line.timeOfDay, line.direction == Direction::Sent, line.bytes, line.size,
                     verdictInWords(trace, number)});
}

/// Empty where the line is left out.
std::string exported(const Trace& trace, Trace::Number number, TraceForm form, const RegisterNames& names) {
    if (trace.find(number) == nullptr) {
        return {};
    }
    const auto cell = [&](TraceColumn column) { return cellInWords(trace, number, column, names); };
    switch (form) {
    case TraceForm::Text:
        return textLine(cell);
    case TraceForm::Csv:
        return csvLine(cell);
    case TraceForm::JsonLines:
        return jsonLine(trace, number, names);
    case TraceForm::Hex:
        return hexLine(*trace.find(number));
    default:
        return packet(trace, number);
    }
}

} // namespace

TraceExport::TraceExport(const Trace& trace, std::vector<Trace::Number> lines, TraceForm form,
                         const RegisterNames& names)
    : trace_(trace), lines_(std::move(lines)), form_(form), names_(names) {}

bool TraceExport::write(const ExportSink& sink, std::size_t most) {
    if (!std::exchange(isBegun_, true)) {
        sink(heading(form_));
    }
    for (std::size_t count = std::min(most, lines_.size() - next_); count > 0; --count, ++next_) {
        const std::string part = exported(trace_, lines_[next_], form_, names_);
        if (!part.empty()) {
            sink(part);
            ++written_;
        }
    }
    return next_ < lines_.size();
}

std::size_t exportTrace(const Trace& trace, std::vector<Trace::Number> lines, TraceForm form,
                        const RegisterNames& names, const ExportSink& sink) {
    TraceExport whole(trace, std::move(lines), form, names);
    whole.write(sink);
    return whole.written();
}

} // namespace varda::core
