#pragma once

#include <cstddef>
#include <string>

namespace varda {

/// The claim of this program on a device node: it finds out why a node cannot be had, and while it lives
/// other programs that ask see the node as taken.
///
/// Where the system has no device nodes the claim is empty, and opening the port itself has to tell.
class NodeClaim {
public:
    /// @param node the path of the node
    /// @param label what the texts of the errors call it
    /// @throws RuntimeError 8002 where the node does not exist, is no serial device or is not permitted, each
    /// with a description of its own; 8005 where it is in use; 8015 where the system lacks the means to open
    /// it
    NodeClaim(const std::string& node, const std::string& label);
    NodeClaim(const NodeClaim&) = delete;
    NodeClaim& operator=(const NodeClaim&) = delete;
    ~NodeClaim();

    /// Number of received bytes that still wait in the driver.
    std::size_t waitingInDriver() const noexcept;

private:
    [[maybe_unused]] int handle_ = -1;
};

} // namespace varda
