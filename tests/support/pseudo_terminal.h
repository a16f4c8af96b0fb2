#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace varda::test {

/// A serial line without hardware: the program under test opens path(), the test holds the far end. On
/// Windows, whose lines varda_line_maker makes outside of wine, that is a port's name, and a connection to
/// there.
///
/// Nothing here runs an event loop; what the program writes in its event loop has to be let out there first.
class PseudoTerminal {
public:
    /// @throws std::system_error where the system has none left
    PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    ~PseudoTerminal();

    const std::string& path() const { return path_; }
#ifndef _WIN32
    /// A handle of the near end, as another program would have it. Valid while the far end is open.
    int nearEnd() const { return nearEnd_; }
#endif

    /// Sends from the far end. @throws std::system_error where the near end takes too long to accept the
    /// bytes
    void write(const std::vector<std::uint8_t>& bytes,
               std::chrono::milliseconds limit = std::chrono::seconds(1)) const;
    /// What has arrived at the far end by now.
    std::vector<std::uint8_t> readAvailable() const;
    /// Waits for `count` bytes at the far end; fewer where the time ran out.
    std::vector<std::uint8_t> read(std::size_t count,
                                   std::chrono::milliseconds limit = std::chrono::seconds(1)) const;
    /// Pulls the plug: every handle of the near end is hung up.
    void closeFarEnd();

private:
#ifdef _WIN32
    using Handle = std::uintptr_t;
#else
    using Handle = int;
    int nearEnd_ = -1;
#endif
    static constexpr Handle none = static_cast<Handle>(-1);

    Handle farEnd_ = none;
    std::string path_;
};

} // namespace varda::test
