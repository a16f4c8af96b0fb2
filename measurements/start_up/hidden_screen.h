#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <sys/types.h>

namespace varda::bench {

/// A screen that nobody sees, whose picture can be looked at without asking anybody: the server keeps it in a
/// file that is mapped here. While it lives DISPLAY names it.
class HiddenScreen {
public:
    /// @param folder where the server may put its file
    explicit HiddenScreen(const std::string& folder);
    HiddenScreen(const HiddenScreen&) = delete;
    HiddenScreen& operator=(const HiddenScreen&) = delete;
    ~HiddenScreen();

    /// Some rows of the picture.
    std::vector<unsigned char> picture() const;

private:
    void map(const std::string& file);

    pid_t server_;
    const unsigned char* bytes_ = nullptr;
    std::size_t size_ = 0;
};

/// Starts a program with nothing on its standard output and error.
pid_t started(const std::vector<std::string>& command);

} // namespace varda::bench
