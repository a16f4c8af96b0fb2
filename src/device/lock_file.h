#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace varda::device {

/// The lock file of a port, with which programs tell one another that they have it: "LCK..ttyS0", in it the
/// process that made it. This one is made with the id as a text, as the Filesystem Hierarchy Standard has it,
/// and goes when the object does; others' are understood in every usual form.
class LockFile {
public:
    /// The folders where such files stand, the one for our own first.
    static std::vector<std::string> usualFolders();

    /// Where the file cannot be made there is none, which does no harm: the claim on the node itself stands.
    /// Those whose makers live no more are taken over, under every name and in every folder.
    /// @param node the node's path without links
    /// @param name the path that the node was chosen by; other programs may have named their file after it
    LockFile(const std::string& node, const std::string& name,
             const std::vector<std::string>& folders = usualFolders());
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;
    ~LockFile();

    /// Whether another lock file names a process that lives; of those that name this one, whether another
    /// object made it. Then none of our own has been made.
    bool isTakenByAnother() const { return isTaken_; }

    /// Tells of lock files that had been left behind, each with the process that made it: they were taken
    /// over, or passed over where they may not be removed. Empty where there was none.
    const std::string& takeOver() const { return takeOver_; }

private:
    void takeOver(const std::string& path);
    void tell(const std::string& news);
    void make(const std::string& path);

    bool isTaken_ = false;
    std::string own_; ///< path; empty where there is none
    std::pair<dev_t, ino_t> ownIdentity_;
    std::string takeOver_;
};

/// The process that a lock file's content names, as a text with or without more behind it, or as a binary
/// number; nothing where it names none.
std::optional<int> ownerInLockFile(std::string_view content);

/// The names that a port's lock file may have: "/dev/pts/5" is "LCK..pts_5" for most programs, for others
/// "LCK..pts:5" or "LCK..5".
std::vector<std::string> lockFileNames(const std::string& node);

} // namespace varda::device
