#pragma once

#include "core/base/name_index.h"
#include "core/base/runtime_error.h"
#include "core/files/text_form.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// One initialisation file held in memory: sections in square brackets with "key=value" lines below them.
///
/// Reading: names compare without regard to the case of A to Z; blanks around names and values are dropped;
/// one pair of matching single or double quotes round a value is dropped as well, what stands inside stays.
/// Whatever follows the first "=" is the value. A line that begins with ";" is a comment. Of sections of one
/// name the first alone counts, of equal keys in it the first. A header ends at its first "]"; a line without
/// "=", without a key or above the first header means nothing. A line ends with LF or CR LF, the last one
/// also with the end of the file. A UTF-8 byte order mark is passed over; bytes above 127 are kept as they
/// are. A file with a byte order mark of UTF-16 is read as UTF-8 and written back in its own form.
///
/// Writing: a value that changes takes the place of its line ("key=value", the key spelled as before), a new
/// key follows the last line of its section that is not blank, a new section the last line of the file. All
/// other lines stay as they are and where they are. Every line of the saved file ends with CR LF, those of a
/// file that was read with LF alone too.
///
/// Time: loading and saving go once through the file, looking up and changing a value takes the same time in
/// a file of any size.
class ProfileFile {
public:
    /// Bytes; a larger file is neither read nor written.
    static constexpr std::size_t sizeLimit = std::size_t{64} * 1024 * 1024;

    /// An empty file.
    ProfileFile() = default;

    /// Reads a file. One that does not exist is empty. One that cannot be read, is no regular file, is larger
    /// than the limit or is not text (holds a zero character) is empty as well; problem() then tells why.
    static ProfileFile load(const std::string& path);

    /// The same for a text in memory.
    static ProfileFile parse(std::string text);

    /// @param size size of a buffer that would take the value and its terminator: what is returned has at
    /// most size - 1 bytes
    /// @return the value, `defaultText` where the section or the key is missing
    std::string value(std::string_view section, std::string_view key, std::string_view defaultText,
                      std::size_t size) const;

    /// The values of the keys 0, 1, 2 .. of a section, as value() has them, up to the first that is missing
    /// or empty; they last until a value is set. Where the keys stand in that order none is looked up.
    std::vector<std::string_view> numberedValues(std::string_view section, std::size_t most,
                                                 std::size_t size) const;

    /// Sets a value, in memory only. Blanks around it are dropped, line breaks and zero bytes in it become
    /// blanks.
    /// @throws RuntimeError 5 where the names could not be found again: an empty key, a key that begins with
    /// ";" or "[" or holds "=", a section with "]", line breaks or zero bytes in either, in a file of UTF-16
    /// what is no UTF-8; 7 where the changes take up 4 GiB
    void setValue(std::string_view section, std::string_view key, std::string_view text);

    /// The file as save() writes it.
    std::string text() const;

    /// Replaces the file of that name in one step: after a failure or a loss of power it is whole, old or
    /// new. @throws RuntimeError with a description that names the file and the reason: 61 disk full, 70
    /// permission denied, 75 path/file access error, 76 path not found (see replaceFile); the problem() where
    /// the file could not be read, since its lines would be lost; OnlyInPlace where saveInPlace would help
    void save(const std::string& path) const;

    /// Writes into the existing file of that name, which a failure in the middle leaves damaged. @throws
    /// RuntimeError as save does
    void saveInPlace(const std::string& path) const;

    /// Why the file is empty although there is something under its name.
    const std::optional<RuntimeError>& problem() const { return problem_; }

    /// Whether what was read looks like a text: it holds no control characters but those that texts have. A
    /// file that could not be read at all is none of which one knows better.
    bool isText() const;

private:
    /// A part of text_.
    struct Span {
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
    };

    /// Names and values are cut from the line when they are needed: there can be hundreds of thousands.
    struct Entry {
        Span
            place; ///< the line as it was read, with its line end; empty, at its section's end, for a new key
        Span line; ///< the line as it is now
    };

    struct Section {
        Span name;
        std::uint32_t end = 0; ///< where new keys go
        bool isNew = false;
        std::vector<Entry> entries; ///< in the order of their lines
        std::uint32_t numbered = 0; ///< so many entries at the front are named 0, 1, 2 .. in their order
        NameIndex index;            ///< of the others; the first of each name
    };

    static ProfileFile unreadable(const RuntimeError& problem);

    void indexLines();
    Section* indexLine(Span line, Section* section);
    static bool addNumbered(Section& section, std::string_view name);
    void indexEntries(Section& section) const;

    std::optional<std::uint32_t> findSection(std::string_view name) const;
    std::optional<std::uint32_t> findEntry(const Section& section, std::string_view name) const;
    Section& addSection(Section section);
    Section& findOrAddSection(std::string_view name);

    std::string savedText(const std::string& path) const;
    std::string asWritten(std::string_view text) const;
    void requireWritable(std::string_view name) const;

    Span store(std::string_view text);
    Span storeLine(std::string name, std::string_view value);
    bool isChanged(const Entry& entry) const { return entry.line.begin >= textEnd_; }
    std::string_view view(Span span) const;
    std::string_view valueOf(const Entry& entry) const;
    Span spanOf(std::string_view part) const;

    TextForm form_ = TextForm::Plain; ///< of the file; text_ is UTF-8 where that is UTF-16
    bool isText_ = true;

    /// As it was read; behind that, in no order, the lines and names that were written since.
    std::string text_;
    std::uint32_t textBegin_ = 0;   ///< behind the byte order mark
    std::uint32_t textEnd_ = 0;     ///< of what was read
    std::vector<Section> sections_; ///< in the order of their headers; the first of each name
    NameIndex sectionIndex_;
    std::optional<RuntimeError> problem_;
};

} // namespace varda::core
