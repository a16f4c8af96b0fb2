#include "device/port_holders_posix.h"

#include "device/lock_file.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
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

} // namespace

PortHolders::PortHolders(std::string root) : root_(std::move(root)) {
    std::error_code error;
    for (files::directory_iterator entry(root_ + "/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        if (const int process = processOf(entry->path()); process > 0) {
            lookInto(process);
        }
    }
    for (auto& [node, processes] : holders_) {
        std::ranges::sort(processes);
        processes.erase(std::unique(processes.begin(), processes.end()), processes.end());
    }
}

void PortHolders::lookInto(int process) {
    constexpr std::string_view devices = "/dev/";
    std::error_code error;
    for (files::directory_iterator entry(folderOf(process) + "/fd", error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code lost;
        const std::string target = files::read_symlink(entry->path(), lost).string();
        if (target.starts_with(devices)) {
            holders_[target].push_back(process);
        }
    }
    sawAll_ = sawAll_ && error != std::errc::permission_denied;
}

std::vector<int> PortHolders::of(const std::string& node) const {
    const auto found = holders_.find(node);
    return found == holders_.end() ? std::vector<int>() : found->second;
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
