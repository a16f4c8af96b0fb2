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

template <typename Ticket>
std::size_t rowOf(const std::vector<Ticket>& tickets, Ticket ticket) {
    return static_cast<std::size_t>(std::ranges::lower_bound(tickets, ticket) - tickets.begin());
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
    change({List::Requests, Kind::Added, requests_.size()}, [&] { appendRequest(request); });
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
    const auto found = ticketsOf_.find(request);
    if (found == ticketsOf_.end()) {
        return std::nullopt;
    }
    return rowOf(tickets_, found->second.front());
}

void PacketTable::appendRequest(const std::string& request) {
    requests_.push_back(request);
    tickets_.push_back(nextTicket_);
    ticketsOf_[request].push_back(nextTicket_);
    ++nextTicket_;
}

void PacketTable::eraseRequest(std::size_t row) {
    const auto found = ticketsOf_.find(requests_[row]);
    Tickets& equalRows = found->second;
    eraseRow(equalRows, rowOf(equalRows, tickets_[row]));
    if (equalRows.empty()) {
        ticketsOf_.erase(found);
    }
    eraseRow(tickets_, row);
    eraseRow(requests_, row);
}

void PacketTable::indexAll() {
    tickets_.clear();
    ticketsOf_.clear();
    for (const std::string& request : requests_) {
        tickets_.push_back(nextTicket_);
        ticketsOf_[request].push_back(nextTicket_);
        ++nextTicket_;
    }
}

} // namespace varda::core
