#include "cli/html_report.h"

#include "core/protocol/hex_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

namespace varda::cli {
namespace {

constexpr std::string_view head = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<style>
:root { --text: #1c1c1c; --paper: #ffffff; --line: #c8c8c8; --right: #1b6e2e; --wrong: #a8201a; --tint: #fbeceb; }
@media (prefers-color-scheme: dark) {
  :root { --text: #e6e6e6; --paper: #1b1b1b; --line: #4a4a4a; --right: #79c98b; --wrong: #ff9a94; --tint: #3a2120; }
}
body { font: 15px/1.45 sans-serif; color: var(--text); background: var(--paper); margin: 2em; }
table { border-collapse: collapse; }
th, td { border-bottom: 1px solid var(--line); padding: 0.3em 0.8em 0.3em 0; text-align: left; vertical-align: top; }
td.number { text-align: right; }
code { font-family: monospace; overflow-wrap: anywhere; }
.right { color: var(--right); }
.wrong { color: var(--wrong); font-weight: bold; }
tr.failed td { background: var(--tint); }
</style>
)";

/// What HTML takes for marks of its own stands as a reference; so do control characters, which it forbids.
std::string escaped(std::string_view text) {
    std::string safe;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        constexpr unsigned char firstPrintable = 0x20;
        switch (character) {
        case '&':
            safe += "&amp;";
            break;
        case '<':
            safe += "&lt;";
            break;
        case '>':
            safe += "&gt;";
            break;
        case '"':
            safe += "&quot;";
            break;
        case '\'':
            safe += "&#39;";
            break;
        default:
            safe += code < firstPrintable ? ' ' : character;
        }
    }
    return safe;
}

std::string cell(const std::string& html, std::string_view kind = {}) {
    return (kind.empty() ? "<td>" : "<td class=\"" + std::string(kind) + "\">") + html + "</td>";
}

std::string milliseconds(const LineResult& result) {
    std::array<char, 32> text = {};
    std::snprintf(text.data(), text.size(), "%.1f", 1000 * result.seconds);
    return result.seconds > 0 ? text.data() : "";
}

std::string bytesCell(const Bytes& bytes) { return cell("<code>" + hexSpaced(bytes) + "</code>"); }

std::string row(const LineResult& result) {
    const bool isRight = result.why.empty();
    return std::string(isRight ? "<tr>" : "<tr class=\"failed\">") +
           cell(std::to_string(result.round), "number") + cell(std::to_string(result.line), "number") +
           cell(escaped(result.kind)) + bytesCell(result.request) + bytesCell(result.answer) +
           cell(milliseconds(result), "number") +
           cell(isRight ? "right" : escaped(result.why), isRight ? "right" : "wrong") + "</tr>\n";
}

} // namespace

std::string htmlReport(const std::string& scenario, const std::vector<LineResult>& results) {
    const std::size_t wrong = failures(results);
    std::string page(head);
    page += "<title>" + escaped(scenario) + "</title>\n</head>\n<body>\n<h1>" + escaped(scenario) +
            "</h1>\n" + "<p><span class=\"right\">" + std::to_string(results.size() - wrong) +
            " right</span>, <span class=\"" + (wrong > 0 ? "wrong" : "right") + "\">" +
            std::to_string(wrong) + " wrong</span></p>\n" +
            "<table>\n<tr><th>Round</th><th>Line</th><th>Request</th><th>Sent</th><th>Answer</th><th>ms</th>"
            "<th>Result</th></tr>\n";
    for (const LineResult& result : results) {
        page += row(result);
    }
    return page + "</table>\n</body>\n</html>\n";
}

} // namespace varda::cli
