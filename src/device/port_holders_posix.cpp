#include "device/port_holders_posix.h"

#include "device/lock_file.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

namespace varda::device {
namespace {

namespace files = std::filesystem;

/// The process of a folder below /proc; 0 for the other folders there.
int processOf(const files::path& folder) {
    const std::string name = folder.filename().string();
    int process = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
    return error == std::errc{} && end == name.data() + name.size() ? process : 0;
}

std::string contentOf(const files::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<int> eachOnce(std::vector<int> processes) {
    std::ranges::sort(processes);
    processes.erase(std::unique(processes.begin(), processes.end()), processes.end());
    return processes;
}

} // namespace

PortHolders::PortHolders(std::string root) : root_(std::move(root)) {
    std::error_code error;
    for (files::directory_iterator entry(root_ + "/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        if (const int process = processOf(entry->path()); process > 0) {
            lookInto(process);
        }
    }
}

void PortHolders::lookInto(int process) {
    constexpr std::string_view devices = "/dev/";
    std::error_code error;
    for (files::directory_iterator entry(folderOf(process) + "/fd", error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code lost;
        const std::string target = files::read_symlink(entry->path(), lost).string();
        if (target.ends_with("/ptmx") && process != ::getpid()) {
            noteFarEnd(process, entry->path().filename().string());
        } else if (target.starts_with(devices)) {
            holders_[target].push_back(process);
        }
    }
    sawAll_ = sawAll_ && error != std::errc::permission_denied;
}

/// All far ends are of one name; which one a handle is of, the system tells beside it.
void PortHolders::noteFarEnd(int process, const std::string& handle) {
    constexpr std::string_view key = "tty-index:";
    std::istringstream lines(contentOf(folderOf(process) + "/fdinfo/" + handle));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(key)) {
            const auto begin = std::min(line.find_first_not_of(" \t", key.size()), line.size());
            makers_["/dev/pts/" + line.substr(begin)].push_back(process);
        }
    }
}

std::vector<int> PortHolders::usersOf(const std::string& node) const {
    const auto found = holders_.find(node);
    std::vector<int> users = found == holders_.end() ? std::vector<int>() : found->second;
    const std::vector<int> makers = makersOf(node);
    std::erase_if(users, [&makers](int user) { return std::ranges::binary_search(makers, user); });
    return users;
}

std::vector<int> PortHolders::of(const std::string& node) const { return eachOnce(usersOf(node)); }

std::size_t PortHolders::handlesOf(const std::string& node) const { return usersOf(node).size(); }

std::vector<int> PortHolders::makersOf(const std::string& node) const {
    const auto found = makers_.find(node);
    return found == makers_.end() ? std::vector<int>() : eachOnce(found->second);
}

bool PortHolders::lives(int process) const {
    std::error_code error;
    return files::exists(folderOf(process), error);
}

std::string PortHolders::programOf(int process) const {
    const std::string name = contentOf(folderOf(process) + "/comm");
    return name.substr(0, name.find('\n'));
}

std::string PortHolders::folderOf(int process) const { return root_ + "/proc/" + std::to_string(process); }

std::vector<FoundLockFile> lockFilesOf(const std::vector<std::string>& names, const std::string& root) {
    std::vector<FoundLockFile> found;
    std::set<files::path> seen;
    for (const std::string& folder : LockFile::usualFolders()) {
        for (const std::string& name : names) {
            for (const std::string& file : lockFileNames(name)) {
                std::string path = folder + '/';
                path += file;
                std::error_code error;
                const files::path target = files::canonical(root + path, error);
                // anything else would not end, or is not there to be read
                const bool isFile = !error && files::is_regular_file(target, error);
                if (isFile && seen.insert(target).second) {
                    found.push_back({path, ownerInLockFile(contentOf(target))});
                }
            }
        }
    }
    return found;
}

} // namespace varda::device
