#include "core/insight/heard_request.h"

#include "core/insight/decoder.h"

#include <utility>

namespace varda::inline core {

std::shared_ptr<const Bytes> HeardRequest::hear(std::span<const std::uint8_t> burst) {
    auto before = std::exchange(request_, nullptr);
    const auto frames = decodeBurst(burst, before ? *before : Bytes());
    if (!frames.empty() && frames.back().kind.isRequest()) {
        const DecodedFrame& last = frames.back();
        const auto bytes = burst.subspan(last.begin, last.end - last.begin);
        request_ = std::make_shared<const Bytes>(bytes.begin(), bytes.end());
    }
    return before;
}

} // namespace varda::core
