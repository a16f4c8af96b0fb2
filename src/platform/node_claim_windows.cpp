#include "platform/node_claim.h"

namespace varda {

NodeClaim::NodeClaim(const std::string& /*node*/, const std::string& /*label*/) {}

NodeClaim::~NodeClaim() = default;

std::size_t NodeClaim::waitingInDriver() const noexcept { return 0; }

} // namespace varda
