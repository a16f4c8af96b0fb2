#pragma once

#include <unistd.h>

namespace varda::device {

/// A file handle that is closed at the end.
class FileHandle {
public:
    explicit FileHandle(int handle) : handle_(handle) {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle() {
        if (isOpen()) {
            ::close(handle_);
        }
    }

    bool isOpen() const { return handle_ >= 0; }
    int get() const { return handle_; }

private:
    int handle_;
};

} // namespace varda::device
