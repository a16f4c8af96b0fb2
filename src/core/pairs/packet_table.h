#pragma once

#include "core/base/name_index.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace varda::inline core {

/// One edit of the packet table, as a view over it has to know it.
struct PacketTableChange {
    enum class List : std::uint8_t { Requests, Answers };
    enum class Kind : std::uint8_t { Added, Removed, Reset };

    List list;
    Kind kind;
    std::size_t row = 0; ///< the row that comes or goes; 0 for a reset, which replaces the whole list

    bool operator==(const PacketTableChange&) const = default;
};

/// What runs around every edit.
struct PacketTableWatcher {
    using Hook = std::function<void(const PacketTableChange& change)>;

    Hook before = [](const PacketTableChange&) {}; ///< the table still is as it was
    Hook after = [](const PacketTableChange&) {};
};

/// The prepared requests and their answers, two lists paired by row.
///
/// Nothing but the row ties an answer to its request. The lists may have different lengths: a damaged packet
/// file leaves a request without an answer.
///
/// Looking a request up takes the same time in a table of any size. Adding costs the same everywhere,
/// removing no more than a pass over the rows; the index that finds requests is never built anew for either.
class PacketTable {
public:
    const std::vector<std::string>& requests() const { return requests_; }
    const std::vector<std::string>& answers() const { return answers_; }
    /// The answer of a row, empty where the list of answers is too short.
    std::string answer(std::size_t row) const {
        return row < answers_.size() ? answers_[row] : std::string();
    }

    void setWatcher(PacketTableWatcher watcher) { watcher_ = std::move(watcher); }

    /// Appends one entry to each list.
    void addPair(const std::string& request, const std::string& answer);

    /// Removes one entry of one list. @throws RuntimeError 9 where there is no such row
    void removeRequest(std::size_t row);
    void removeAnswer(std::size_t row);

    /// Puts other lists in the place of both, told as one reset for each.
    void replace(std::vector<std::string> requests, std::vector<std::string> answers);
    void clear() { replace({}, {}); }

    /// The lowest row whose request is `request`, character for character.
    std::optional<std::size_t> find(const std::string& request) const;

private:
    template <typename Edit>
    void change(const PacketTableChange& change, Edit&& edit);
    void eraseRequest(std::size_t row);
    void indexAll();
    void indexRow(std::size_t row);
    std::optional<std::uint32_t> rowOf(const std::string& request, std::uint32_t hash) const;
    std::optional<std::uint32_t> nextEqualRow(std::uint32_t row) const;

    std::vector<std::string> requests_;
    std::vector<std::string> answers_;
    std::vector<std::uint32_t> hashes_; ///< of the requests, row by row
    NameIndex rows_;                    ///< of the requests; the first row of equal ones
    PacketTableWatcher watcher_;
};

} // namespace varda::core
