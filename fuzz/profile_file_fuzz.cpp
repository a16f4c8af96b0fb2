// Any bytes as a profile file: look-ups, a change, and what must hold after it.

#include "core/files/profile_file.h"
#include "input.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using varda::ProfileFile;
using varda::fuzz::Input;
using varda::fuzz::require;
using Names = std::vector<std::string>;

constexpr std::size_t mostNames = 16;
constexpr std::size_t wholeValue = 1U << 20U;

/// Names that may stand in the file: the first ones between `open` and `close` on one line. `open` is 0 for
/// the beginning of the line.
Names namesBetween(std::string_view text, char open, char close) {
    std::set<std::string> names;
    while (!text.empty() && names.size() < mostNames) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        const std::size_t begin = open == '\0' ? 0 : line.find(open) + 1;
        line.remove_prefix(begin);
        const std::size_t end = line.find(close);
        if (end != std::string_view::npos) {
            names.emplace(line.substr(0, end));
        }
    }
    return {names.begin(), names.end()};
}

/// The values under all pairs of names.
std::vector<std::string> valuesOf(const ProfileFile& file, const Names& sections, const Names& keys) {
    std::vector<std::string> values;
    for (const std::string& section : sections) {
        for (const std::string& key : keys) {
            values.push_back(file.value(section, key, "\1missing", wholeValue));
        }
    }
    return values;
}

bool isBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

std::string trimmed(std::string text) {
    while (!text.empty() && isBlank(text.back())) {
        text.pop_back();
    }
    const auto first = std::find_if_not(text.begin(), text.end(), isBlank);
    return {first, text.end()};
}

std::string folded(const std::string& name) {
    std::string result = trimmed(name);
    std::transform(result.begin(), result.end(), result.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character | 0x20) : character;
    });
    return result;
}

/// A value as it comes back after it was set.
std::string asRead(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::replace(text.begin(), text.end(), '\r', ' ');
    std::replace(text.begin(), text.end(), '\0', ' ');
    text = trimmed(text);
    const bool quoted = text.size() > 1 && text.front() == text.back() && (text[0] == '"' || text[0] == '\'');
    return quoted ? text.substr(1, text.size() - 2) : text;
}

bool setIn(ProfileFile& file, const std::string& section, const std::string& key, const std::string& text) {
    return varda::fuzz::attempt({5},
                                [&] {
                                    file.setValue(section, key, text);
                                    return true;
                                })
        .has_value();
}

/// Writing a file without a change keeps every value; writing it again keeps every byte.
void checkRewriting(const ProfileFile& file, const Names& sections, const Names& keys) {
    const ProfileFile again = ProfileFile::parse(file.text());
    require(valuesOf(again, sections, keys) == valuesOf(file, sections, keys), "values after rewriting");
    require(again.text() == file.text(), "bytes after rewriting twice");
}

void checkChange(ProfileFile file, Names sections, Names keys, Input& source) {
    const bool known = source.flag() && !sections.empty() && !keys.empty();
    const std::string section = known ? sections[source.byte() % sections.size()] : source.text(20);
    const std::string key = known ? keys[source.byte() % keys.size()] : source.text(20);
    const std::string text = source.text(60);

    const std::vector<std::string> before = valuesOf(file, sections, keys);
    const std::string bytesBefore = file.text();
    if (!setIn(file, section, key, text)) {
        require(file.text() == bytesBefore, "a refused name changes nothing");
        return;
    }
    require(file.value(section, key, "\1missing", wholeValue) == asRead(text), "the value reads back");
    const std::vector<std::string> after = valuesOf(file, sections, keys);
    for (std::size_t pair = 0; pair < before.size(); ++pair) {
        const bool isChanged = folded(sections[pair / keys.size()]) == folded(section) &&
                               folded(keys[pair % keys.size()]) == folded(key);
        require(isChanged ? after[pair] == asRead(text) : after[pair] == before[pair], "other values stay");
    }
    sections.push_back(section);
    keys.push_back(key);
    checkRewriting(file, sections, keys);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input source(data, size);
    const std::string text = source.text(4096);
    const ProfileFile file = ProfileFile::parse(text);
    const bool isUtf16 = text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
    require(isUtf16 || file.problem().has_value() == (text.find('\0') != std::string::npos), "what is text");
    const Names sections = namesBetween(text, '[', ']');
    const Names keys = namesBetween(text, '\0', '=');
    for (const std::string& value : valuesOf(file, sections, keys)) {
        require(value.find('\n') == std::string::npos, "values are parts of lines");
    }
    require(file.value("Information", "Total", "", 4).size() <= 3, "values are cut");
    checkRewriting(file, sections, keys);
    if (!isUtf16) { // what is no text changes on its way there
        checkChange(file, sections, keys, source);
    }
    return 0;
}
