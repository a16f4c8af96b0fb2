// For systems without device nodes; node_claim_unix.cpp is for the rest.
#if !defined(__unix__) && !defined(__APPLE__)

#include "platform/node_claim.h"

namespace varda {

NodeClaim::NodeClaim(const std::string& /*node*/, const std::string& /*label*/) {}

NodeClaim::~NodeClaim() = default;

std::size_t NodeClaim::waitingInDriver() const noexcept { return 0; }

} // namespace varda

#endif
