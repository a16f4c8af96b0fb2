#pragma once

#include "core/base/clock.h"

#include <memory>
#include <string>

namespace varda::inline core {

class AppendFile;

/// The log file of one monitoring run: lines appended as they come, on the disk within a second.
class MonitorLog {
public:
    explicit MonitorLog(Clock& clock);
    MonitorLog(const MonitorLog&) = delete;
    MonitorLog& operator=(const MonitorLog&) = delete;
    ~MonitorLog();

    /// Opens a file for appending; it is made where there is none.
    /// @throws RuntimeError 76 where its folder does not exist, 75 where it cannot be opened or is no regular
    /// file
    void open(const std::string& path);
    bool isOpen() const { return file_ != nullptr; }
    /// Appends one line and its line end.
    /// @return false where it could not be written whole, for example on a full disk
    bool write(std::string line);
    void close();

private:
    void syncLater();

    Clock& clock_;
    std::unique_ptr<AppendFile> file_;
    Wait sync_;
    bool endsInStump_ = false; ///< the last line was not written whole
};

} // namespace varda::core
