#include "docs/protocol_document.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace varda::test {
namespace {

std::string withoutBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos
               ? std::string()
               : std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

/// The cells of a row "| a | b |".
Texts cells(const std::string& row) {
    Texts parts = split(row, '|');
    if (parts.size() < 3) {
        throw std::runtime_error("no row of a table: " + row);
    }
    return {parts.begin() + 1, parts.end() - 1};
}

std::string joined(const Texts& parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() ? "" : " | ") + part;
    }
    return text;
}

/// Goes through the lines from the first to the last and puts each where it belongs.
class Reader {
public:
    explicit Reader(Texts lines) { document_.lines = std::move(lines); }

    ProtocolDocument read() {
        while (at_ < document_.lines.size()) {
            if (line() == "```frame") {
                takeFrame();
            } else if (line().starts_with("|")) {
                takeTable();
            } else {
                document_.prose.push_back(next());
            }
        }
        return std::move(document_);
    }

private:
    const std::string& line() const { return document_.lines.at(at_); }
    const std::string& next() { return document_.lines.at(at_++); }

    void takeFrame() {
        next();
        FrameBlock block{at_ + 1, {}};
        while (line() != "```") { // std::out_of_range where the block does not end
            block.lines.push_back(next());
        }
        next();
        document_.frames.push_back(std::move(block));
    }

    void takeTable() {
        DocumentTable table{joined(cells(next())), {}};
        next(); // the rule below the header
        while (at_ < document_.lines.size() && line().starts_with("|")) {
            table.rows.push_back(cells(next()));
        }
        document_.tables.push_back(std::move(table));
    }

    ProtocolDocument document_;
    std::size_t at_ = 0;
};

} // namespace

Texts split(std::string_view text, char separator) {
    Texts parts;
    for (std::size_t end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
        parts.push_back(withoutBlanks(text.substr(0, end)));
        text.remove_prefix(end + 1);
    }
    parts.push_back(withoutBlanks(text));
    return parts;
}

std::string code(const std::string& cell) {
    const std::size_t first = cell.find('`');
    const std::size_t last = cell.rfind('`');
    if (first == last) {
        throw std::runtime_error("no code in the cell: " + cell);
    }
    return cell.substr(first + 1, last - first - 1);
}

const std::vector<Texts>& ProtocolDocument::rows(std::string_view header, std::size_t atLeast) const& {
    const auto found = std::ranges::find(tables, header, &DocumentTable::header);
    if (found == tables.end() || found->rows.size() < atLeast) {
        throw std::runtime_error("no table, or too few rows in it: " + std::string(header));
    }
    return found->rows;
}

ProtocolDocument readProtocolDocument() {
    std::ifstream file(VARDA_PROTOCOL_DOCUMENT);
    if (!file) {
        throw std::runtime_error("cannot be read: " VARDA_PROTOCOL_DOCUMENT);
    }
    Texts lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(std::move(line));
    }
    return Reader(std::move(lines)).read();
}

} // namespace varda::test
