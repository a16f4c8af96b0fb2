#pragma once

#include "device/native_handle.h"
#include "device/refusals.h"

#include <memory>
#include <string>

namespace varda::device {

class LockFile;

/// The claim of this program on a serial port: it opens the port, finds out why it cannot be had, and while
/// it lives other programs that ask see the port as taken.
class NodeClaim {
public:
    /// @param node the path of the node
    /// @param label what the texts of the errors call it
    /// @throws RuntimeError 8002 where the node does not exist, is no serial port or is not permitted, each
    /// with a description of its own; 8005 where it is in use; 8015 where the system lacks the means to open
    /// it
    NodeClaim(const std::string& node, const std::string& label);
    NodeClaim(const NodeClaim&) = delete;
    NodeClaim& operator=(const NodeClaim&) = delete;
    ~NodeClaim();

    NativeHandle handle() const { return handle_; }
    /// What was taken over with the port, as LockFile tells it; empty mostly.
    const std::string& takeOver() const { return takeOver_; }
    /// From now on somebody else closes the handle.
    void handOver() { isHandedOver_ = true; }

private:
    std::unique_ptr<LockFile> lockFile_;
    std::string takeOver_;
    NativeHandle handle_{};
    bool isHandedOver_ = false;
};

} // namespace varda::device
