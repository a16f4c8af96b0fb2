#include "core/pairs/packet_table.h"

#include "core/base/runtime_error.h"

#include <algorithm>
#include <utility>

namespace varda::inline core {
namespace {

using List = PacketTableChange::List;
using Kind = PacketTableChange::Kind;

template <typename Value>
void eraseRow(std::vector<Value>& rows, std::size_t row) {
    rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(row));
}

void requireRow(const std::vector<std::string>& list, std::size_t row) {
    if (row >= list.size()) {
        RuntimeError error = subscriptOutOfRange();
        error.advise("The marked request has no answer. Remove it, and register the pair again.");
        throw error;
    }
}

} // namespace

template <typename Edit>
void PacketTable::change(const PacketTableChange& change, Edit&& edit) {
    watcher_.before(change);
    std::forward<Edit>(edit)();
    watcher_.after(change);
}

void PacketTable::addPair(const std::string& request, const std::string& answer) {
    change({List::Requests, Kind::Added, requests_.size()}, [&] {
        requests_.push_back(request);
        hashes_.push_back(hashOfText(request));
        indexRow(requests_.size() - 1);
    });
    change({List::Answers, Kind::Added, answers_.size()}, [&] { answers_.push_back(answer); });
}

void PacketTable::removeRequest(std::size_t row) {
    requireRow(requests_, row);
    change({List::Requests, Kind::Removed, row}, [&] { eraseRequest(row); });
}

void PacketTable::removeAnswer(std::size_t row) {
    requireRow(answers_, row);
    change({List::Answers, Kind::Removed, row}, [&] { eraseRow(answers_, row); });
}

void PacketTable::replace(std::vector<std::string> requests, std::vector<std::string> answers) {
    change({List::Requests, Kind::Reset}, [&] {
        requests_ = std::move(requests);
        indexAll();
    });
    change({List::Answers, Kind::Reset}, [&] { answers_ = std::move(answers); });
}

std::optional<std::size_t> PacketTable::find(const std::string& request) const {
    return rowOf(request, hashOfText(request));
}

std::optional<std::uint32_t> PacketTable::rowOf(const std::string& request, std::uint32_t hash) const {
    return rows_.find(hash, [&](std::uint32_t row) { return requests_[row] == request; });
}

void PacketTable::eraseRequest(std::size_t row) {
    const auto gone = static_cast<std::uint32_t>(row);
    if (rowOf(requests_[row], hashes_[row]) == gone) {
        rows_.remove(hashes_[row], gone);
        if (const auto next = nextEqualRow(gone)) {
            rows_.insert(hashes_[row], *next);
        }
    }
    rows_.closeGap(gone);
    eraseRow(hashes_, row);
    eraseRow(requests_, row);
}

/// The first row behind another one that has the same request.
std::optional<std::uint32_t> PacketTable::nextEqualRow(std::uint32_t row) const {
    for (std::uint32_t next = row + 1; next < requests_.size(); ++next) {
        if (hashes_[next] == hashes_[row] && requests_[next] == requests_[row]) {
            return next;
        }
    }
    return std::nullopt;
}

void PacketTable::indexAll() {
    rows_.clear();
    hashes_.clear();
    rows_.reserve(requests_.size());
    hashes_.reserve(requests_.size());
    for (const std::string& request : requests_) {
        hashes_.push_back(hashOfText(request));
    }
    constexpr std::size_t ahead = 16; // as many as wait for memory at a time, in a large table
    for (std::size_t row = 0; row < requests_.size(); ++row) {
        rows_.expect(hashes_[std::min(row + ahead, requests_.size() - 1)]);
        indexRow(row);
    }
}

void PacketTable::indexRow(std::size_t row) {
    if (!rowOf(requests_[row], hashes_[row])) {
        rows_.insert(hashes_[row], static_cast<std::uint32_t>(row));
    }
}

} // namespace varda::core
