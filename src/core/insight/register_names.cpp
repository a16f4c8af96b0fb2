#include "core/insight/register_names.h"

#include "core/base/blanks.h"
#include "core/base/entry_lines.h"

namespace varda::inline core {
namespace {

/// Without the double quotes round it, those within it halved.
std::string unquoted(std::string_view text) {
    if (text.size() < 2 || text.front() != '"' || text.back() != '"') {
        return std::string(text);
    }
    std::string name(text.substr(1, text.size() - 2));
    for (auto pair = name.find("\"\""); pair != std::string::npos; pair = name.find("\"\"", pair + 1)) {
        name.erase(pair, 1);
    }
    return name;
}

} // namespace

RegisterNames RegisterNames::parse(std::string_view csv) {
    RegisterNames names;
    forEachEntry(csv, [&names](std::string_view line, std::size_t number) { names.takeLine(line, number); });
    return names;
}

void RegisterNames::takeLine(std::string_view line, std::size_t number) {
    const auto comma = line.find(',');
    const std::optional<Point> point = readPoint(line.substr(0, comma));
    const std::string name = comma == std::string_view::npos
                                 ? std::string()
                                 : unquoted(withoutBlanksAround(line.substr(comma + 1)));
    if (!point || name.empty()) {
        badLines_.push_back(number);
        return;
    }
    names_.insert_or_assign(*point, name);
}

std::string_view RegisterNames::find(const Point& point) const {
    const auto found = names_.find(point);
    return found != names_.end() ? std::string_view(found->second) : std::string_view();
}

std::string RegisterNames::describe(const Point& point) const {
    const std::string_view name = find(point);
    return name.empty() ? nameOf(point) : nameOf(point) + " (" + std::string(name) + ")";
}

const RegisterNames& noNames() {
    static const RegisterNames none;
    return none;
}

} // namespace varda::core
