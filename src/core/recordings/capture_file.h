#pragma once

#include "core/base/clock.h"
#include "core/files/append_file.h"
#include "core/insight/pcapng.h"

#include <memory>
#include <string>

namespace varda::inline core {

/// A capture that is written while it goes on: whole after each packet, on the disk within a second.
class CaptureFile {
public:
    /// @param clock outlives this
    explicit CaptureFile(Clock& clock) : clock_(clock) {}
    CaptureFile(const CaptureFile&) = delete;
    CaptureFile& operator=(const CaptureFile&) = delete;
    ~CaptureFile();

    /// Begins the file anew. @throws RuntimeError of replaceFile, and 75 where it cannot be opened
    void open(const std::string& path);
    bool isOpen() const { return file_ != nullptr; }
    /// @return false where the packet could not be written whole, for example on a full disk; nothing is
    /// written behind it then
    bool write(const CapturedPacket& packet);
    void close();

private:
    Clock& clock_;
    std::unique_ptr<AppendFile> file_;
    Wait sync_;
    bool isStuck_ = false;
};

} // namespace varda::core
