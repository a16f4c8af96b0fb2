#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace varda::device {

/// The processes that have device nodes open, as far as this one may look into others.
class PortHolders {
public:
    /// Looks through all processes, once. @param root where the system's folders are looked for
    explicit PortHolders(std::string root);

    /// The ids of the processes that have a node open, in their order, each once; without those that made it.
    std::vector<int> of(const std::string& node) const;
    /// How many handles of a node these have.
    std::size_t handlesOf(const std::string& node) const;
    /// Other processes that made a pseudo-terminal, and hold its far end. They mostly have the node open as
    /// well, to keep its settings, and do not use it.
    std::vector<int> makersOf(const std::string& node) const;
    /// Whether no process was closed to this one.
    bool sawAll() const { return sawAll_; }

    bool lives(int process) const;
    /// The program that a process runs; empty where that cannot be told.
    std::string programOf(int process) const;

private:
    void lookInto(int process);
    void noteFarEnd(int process, const std::string& handle);
    /// An entry for each handle.
    std::vector<int> usersOf(const std::string& node) const;
    std::string folderOf(int process) const;

    std::string root_;
    std::map<std::string, std::vector<int>> holders_; ///< by node, once for each handle
    std::map<std::string, std::vector<int>> makers_;
    bool sawAll_ = true;
};

/// A lock file of a port.
struct FoundLockFile {
    std::string path;
    std::optional<int> owner; ///< nothing where it names no process, or cannot be read
};

/// The lock files of a port in the usual folders, each once though links lead there by several ways.
/// @param names what the port is called, without links and with
std::vector<FoundLockFile> lockFilesOf(const std::vector<std::string>& names, const std::string& root);

} // namespace varda::device
