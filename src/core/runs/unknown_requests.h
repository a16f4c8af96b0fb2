#pragma once

#include "core/base/bytes.h"
#include "core/link/exchange.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace varda::inline core {

/// A request that came in and that no prepared pair answers.
struct UnknownRequest {
    Bytes bytes;
    std::uint64_t count = 0;
    bool isAnswered = false;   ///< by a memory, the last time
    std::uint64_t notSent = 0; ///< answers of a memory that the port did not take

    bool operator==(const UnknownRequest&) const = default;
};

/// Counts the requests that no prepared pair answers.
class UnknownRequests {
public:
    static constexpr std::size_t mostKept = 10'000;

    /// @param exchange any; those of such requests are counted @return whether it was one
    bool note(const Exchange& exchange);

    /// In the order in which they came first.
    const std::vector<UnknownRequest>& requests() const { return requests_; }
    /// How often others came than those that are kept.
    std::uint64_t others() const { return others_; }
    /// A prepared pair answers it from now on, for example.
    void forget(std::span<const std::uint8_t> request);
    void clear() { *this = {}; }

private:
    std::vector<UnknownRequest> requests_;
    std::unordered_map<std::string, std::size_t> rows_; ///< of the requests, by their texts
    std::uint64_t others_ = 0;
};

} // namespace varda::core
