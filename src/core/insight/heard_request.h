#pragma once

#include "core/base/bytes.h"

#include <cstdint>
#include <memory>
#include <span>

namespace varda::inline core {

/// On a line that is only listened to: the request that the next burst may answer.
class HeardRequest {
public:
    /// A burst was heard: what it ends with, if that is a request, may be answered by the next one.
    /// @return the request that it may answer itself, or nullptr
    std::shared_ptr<const Bytes> hear(std::span<const std::uint8_t> burst);
    void forget() { request_.reset(); }

private:
    std::shared_ptr<const Bytes> request_;
};

} // namespace varda::core
