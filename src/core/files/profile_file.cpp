#include "core/files/profile_file.h"

#include "core/files/atomic_file.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace varda::inline core {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view lineBreak = "\r\n";

/// Line ends count as blanks, so that what is cut from a line never carries one.
constexpr bool isBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string_view withoutQuotes(std::string_view value) {
    const bool quoted =
        value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.front() == value.back();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

/// A line break in a value would forge lines, a zero byte would make the file unreadable.
std::string withoutLineBreaks(std::string_view text) {
    std::string result(text);
    std::replace_if(
        result.begin(), result.end(),
        [](char character) { return character == '\r' || character == '\n' || character == '\0'; }, ' ');
    return result;
}

bool hasAny(std::string_view name, std::string_view characters) {
    return name.find_first_of(characters) != std::string_view::npos;
}

void requireSectionName(std::string_view section) {
    if (hasAny(section, std::string_view("]\r\n\0", 4))) {
        throw RuntimeError(run_time_error::invalidProcedureCall,
                           "A section cannot be named \"" + std::string(section) + "\"");
    }
}

void requireKeyName(std::string_view key) {
    if (key.empty() || key.front() == ';' || key.front() == '[' ||
        hasAny(key, std::string_view("=\r\n\0", 4))) {
        throw RuntimeError(run_time_error::invalidProcedureCall,
                           "A key cannot be named \"" + std::string(key) + "\"");
    }
}

/// The name in a section header; nothing for another line.
std::optional<std::string_view> headerName(std::string_view content) {
    const std::size_t close = content.starts_with('[') ? content.find(']') : std::string_view::npos;
    if (close == std::string_view::npos) {
        return std::nullopt;
    }
    return withoutBlanks(content.substr(1, close - 1));
}

/// The key that a line holds; comments and damaged headers hold none.
std::optional<std::string_view> keyIn(std::string_view content) {
    const std::size_t equals = content.find('=');
    const bool isEntry =
        equals != std::string_view::npos && equals != 0 && content.front() != ';' && content.front() != '[';
    return isEntry ? std::optional(withoutBlanks(content.substr(0, equals))) : std::nullopt;
}

std::string_view keyOf(std::string_view line) { return withoutBlanks(line.substr(0, line.find('='))); }

std::string_view valueIn(std::string_view line) { return withoutBlanks(line.substr(line.find('=') + 1)); }

/// What a buffer takes beside its terminator.
std::string_view fitting(std::string_view value, std::size_t buffer) {
    return value.substr(0, buffer == 0 ? 0 : buffer - 1);
}

/// The number that a name spells as to_string() would.
std::optional<std::uint32_t> numberOf(std::string_view name) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool isSpelledSo = name.size() == 1 || !name.starts_with('0');
    return error == std::errc() && end == name.data() + name.size() && isSpelledSo ? std::optional(number)
                                                                                   : std::nullopt;
}

/// Appends whole lines, each with the line end that is written.
void appendLines(std::string_view lines, std::string& result) {
    while (!lines.empty()) {
        const std::size_t feed = lines.find('\n');
        std::string_view line = lines.substr(0, feed);
        lines.remove_prefix(feed == std::string_view::npos ? lines.size() : feed + 1);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        result.append(line).append(lineBreak);
    }
}

} // namespace

ProfileFile ProfileFile::load(const std::string& path) {
    FileText file = readRegularFile(path, sizeLimit);
    ProfileFile result = file.problem ? unreadable(*file.problem) : parse(std::move(file.text));
    if (result.problem_ && !file.problem) {
        result.problem_ = fileError(path, "is no text file");
        result.problem_->advise("Choose another name: it is none of this program's files.");
    }
    return result;
}

ProfileFile ProfileFile::parse(std::string text) {
    if (text.size() > sizeLimit) {
        return unreadable(RuntimeError(run_time_error::fileAccessError, "The text is larger than 64 MiB"));
    }
    const TextForm form = textFormOf(text);
    std::optional<std::string> decoded =
        form == TextForm::Plain ? std::optional(std::move(text)) : decodedText(text, form);
    if (!decoded || decoded->find('\0') != std::string::npos) {
        ProfileFile result =
            unreadable(RuntimeError(run_time_error::fileAccessError, "A text has no zero characters"));
        result.isText_ = false;
        return result;
    }
    ProfileFile result;
    result.form_ = form;
    result.text_ = *std::move(decoded);
    result.textEnd_ = static_cast<std::uint32_t>(result.text_.size());
    result.indexLines();
    return result;
}

ProfileFile ProfileFile::unreadable(const RuntimeError& problem) {
    ProfileFile result;
    result.problem_ = problem;
    return result;
}

bool ProfileFile::isText() const {
    // Beside blanks and line ends these have been seen in texts: backspace, the end of a file, escape.
    constexpr std::string_view usual = "\b\t\n\v\f\r\x1A\x1B";
    const auto isStrange = [usual](char character) {
        return static_cast<unsigned char>(character) < ' ' && usual.find(character) == std::string_view::npos;
    };
    return isText_ && std::ranges::none_of(view({textBegin_, textEnd_}), isStrange);
}

void ProfileFile::indexLines() {
    if (text_.starts_with(byteOrderMark)) {
        textBegin_ = static_cast<std::uint32_t>(byteOrderMark.size());
    }
    Section* section = nullptr;
    for (std::uint32_t begin = textBegin_; begin < textEnd_;) {
        const std::size_t feed = text_.find('\n', begin);
        const Span line{begin, feed == std::string::npos ? textEnd_ : static_cast<std::uint32_t>(feed + 1)};
        section = indexLine(line, section);
        begin = line.end;
    }
    for (Section& filled : sections_) {
        indexEntries(filled);
    }
}

/// @return the section that the following lines belong to, null where they belong to none
ProfileFile::Section* ProfileFile::indexLine(Span line, Section* section) {
    const std::string_view content = withoutBlanks(view(line));
    if (const auto header = headerName(content)) {
        return findSection(*header) ? nullptr : &addSection({spanOf(*header), line.end, false, {}, 0, {}});
    }
    if (section != nullptr && !content.empty()) {
        section->end = line.end;
        if (const auto key = keyIn(content)) {
            addNumbered(*section, *key);
            section->entries.push_back({line, line});
        }
    }
    return section;
}

/// Numbered names, which lists have, need no index where they stand in their order. To be called before the
/// entry is added.
bool ProfileFile::addNumbered(Section& section, std::string_view name) {
    const bool isNext = section.numbered == section.entries.size() && numberOf(name) == section.numbered;
    section.numbered += isNext ? 1 : 0;
    return isNext;
}

void ProfileFile::indexEntries(Section& section) const {
    const auto size = static_cast<std::uint32_t>(section.entries.size());
    section.index.reserve(size - section.numbered);
    for (std::uint32_t entry = section.numbered; entry < size; ++entry) {
        const std::string_view key = keyOf(view(section.entries[entry].line));
        if (!findEntry(section, key)) {
            section.index.insert(hashOfName(key), entry);
        }
    }
}

std::string ProfileFile::value(std::string_view section, std::string_view key, std::string_view defaultText,
                               std::size_t size) const {
    std::string_view found = defaultText;
    if (const auto inSection = findSection(withoutBlanks(section))) {
        const Section& searched = sections_[*inSection];
        if (const auto entry = findEntry(searched, withoutBlanks(key))) {
            found = valueOf(searched.entries[*entry]);
        }
    }
    return std::string(fitting(found, size));
}

std::vector<std::string_view> ProfileFile::numberedValues(std::string_view section, std::size_t most,
                                                          std::size_t size) const {
    std::vector<std::string_view> values;
    const auto inSection = findSection(withoutBlanks(section));
    if (!inSection) {
        return values;
    }
    const Section& searched = sections_[*inSection];
    values.reserve(std::min<std::size_t>(most, searched.numbered));
    while (values.size() < most) {
        const auto entry = values.size() < searched.numbered
                               ? static_cast<std::uint32_t>(values.size())
                               : findEntry(searched, std::to_string(values.size()));
        const std::string_view value = entry ? fitting(valueOf(searched.entries[*entry]), size) : "";
        if (value.empty()) {
            break;
        }
        values.push_back(value);
    }
    return values;
}

std::string_view ProfileFile::valueOf(const Entry& entry) const {
    return withoutQuotes(valueIn(view(entry.line)));
}

std::optional<std::uint32_t> ProfileFile::findSection(std::string_view name) const {
    return sectionIndex_.find(hashOfName(name), [&](std::uint32_t section) {
        return equalNames(view(sections_[section].name), name);
    });
}

std::optional<std::uint32_t> ProfileFile::findEntry(const Section& section, std::string_view name) const {
    if (const auto number = numberOf(name); number && *number < section.numbered) {
        return number;
    }
    return section.index.find(hashOfName(name), [&](std::uint32_t entry) {
        return equalNames(keyOf(view(section.entries[entry].line)), name);
    });
}

ProfileFile::Section& ProfileFile::addSection(Section section) {
    sectionIndex_.insert(hashOfName(view(section.name)), static_cast<std::uint32_t>(sections_.size()));
    return sections_.emplace_back(std::move(section));
}

void ProfileFile::setValue(std::string_view section, std::string_view key, std::string_view text) {
    const std::string_view sectionName = withoutBlanks(section);
    const std::string_view keyName = withoutBlanks(key);
    requireSectionName(sectionName);
    requireKeyName(keyName);
    requireWritable(sectionName);
    requireWritable(keyName);
    const std::string line = withoutLineBreaks(asWritten(text));
    const std::string_view value = withoutBlanks(line);
    Section& target = findOrAddSection(sectionName);
    const auto found = findEntry(target, keyName);
    if (!found) {
        if (!addNumbered(target, keyName)) {
            target.index.insert(hashOfName(keyName), static_cast<std::uint32_t>(target.entries.size()));
        }
        target.entries.push_back({{target.end, target.end}, storeLine(std::string(keyName), value)});
        return;
    }
    Entry& entry = target.entries[*found];
    const std::string_view old = view(entry.line);
    if (valueIn(old) != value) {
        entry.line = storeLine(std::string(keyOf(old)), value);
    }
}

/// A text as it comes back from the file.
std::string ProfileFile::asWritten(std::string_view text) const {
    if (form_ == TextForm::Plain) {
        return std::string(text);
    }
    return *decodedText(encodedText(std::string(text), form_), form_);
}

void ProfileFile::requireWritable(std::string_view name) const {
    if (form_ != TextForm::Plain && asWritten(name) != name) {
        throw RuntimeError(run_time_error::invalidProcedureCall, "A name in UTF-16 has to be a text");
    }
}

ProfileFile::Section& ProfileFile::findOrAddSection(std::string_view name) {
    if (const auto section = findSection(name)) {
        return sections_[*section];
    }
    return addSection({store(name), textEnd_, true, {}, 0, {}});
}

std::string ProfileFile::text() const {
    std::string result = text_.substr(0, textBegin_);
    std::uint32_t position = textBegin_;
    const auto copyUpTo = [&](std::uint32_t end) {
        appendLines(view({position, end}), result);
        position = end;
    };
    for (const Section& section : sections_) {
        if (section.isNew) {
            copyUpTo(textEnd_);
            result.append("[").append(view(section.name)).append("]").append(lineBreak);
        }
        for (const Entry& entry : section.entries) {
            if (isChanged(entry)) {
                copyUpTo(entry.place.begin);
                result.append(view(entry.line)).append(lineBreak);
                position = entry.place.end;
            }
        }
    }
    copyUpTo(textEnd_);
    return encodedText(std::move(result), form_);
}

void ProfileFile::save(const std::string& path) const { replaceFile(path, savedText(path)); }

void ProfileFile::saveInPlace(const std::string& path) const { overwriteFile(path, savedText(path)); }

std::string ProfileFile::savedText(const std::string& path) const {
    if (problem_) {
        throw RuntimeError(*problem_);
    }
    std::string content = text();
    if (content.size() > sizeLimit) {
        RuntimeError error = fileError(path, "would be larger than 64 MiB and could not be loaded again");
        error.advise("Delete entries, and save again.");
        throw error;
    }
    return content;
}

ProfileFile::Span ProfileFile::store(std::string_view text) {
    if (text.size() > UINT32_MAX - text_.size()) {
        throw RuntimeError(run_time_error::outOfMemory, "Out of memory");
    }
    text_.append(text);
    const auto end = static_cast<std::uint32_t>(text_.size());
    return {end - static_cast<std::uint32_t>(text.size()), end};
}

ProfileFile::Span ProfileFile::storeLine(std::string name, std::string_view value) {
    return store(name.append("=").append(value));
}

std::string_view ProfileFile::view(Span span) const {
    return std::string_view(text_).substr(span.begin, span.end - span.begin);
}

ProfileFile::Span ProfileFile::spanOf(std::string_view part) const {
    const auto begin = static_cast<std::uint32_t>(part.data() - text_.data());
    return {begin, begin + static_cast<std::uint32_t>(part.size())};
}

} // namespace varda::core
