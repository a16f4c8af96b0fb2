#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace varda::test {

using Texts = std::vector<std::string>;

/// The parts of a text between the separators, without the blanks around them.
Texts split(std::string_view text, char separator);

/// The text within the backticks of a table cell. @throws std::runtime_error where it has none
std::string code(const std::string& cell);

/// A code block marked "frame": one example.
struct FrameBlock {
    std::size_t line; ///< number of its first line
    Texts lines;
};

/// A table, cells with their backticks.
struct DocumentTable {
    std::string header; ///< the cells of its first row, " | " between them
    std::vector<Texts> rows;
};

/// docs/protocol.md, taken apart.
struct ProtocolDocument {
    Texts lines;
    Texts prose; ///< the lines that belong neither to a frame block nor to a table
    std::vector<FrameBlock> frames;
    std::vector<DocumentTable> tables;

    /// The rows of the one table with that header.
    /// @throws std::runtime_error where there is no such table or it has fewer rows than `atLeast`
    const std::vector<Texts>& rows(std::string_view header, std::size_t atLeast) const&;
    const std::vector<Texts>& rows(std::string_view header, std::size_t atLeast) const&& = delete;
};

/// @throws std::runtime_error where the document cannot be read or a frame block does not end
ProtocolDocument readProtocolDocument();

} // namespace varda::test
