#include "device/node_target.h"

#include <filesystem>
#include <string_view>

namespace varda::device {

namespace files = std::filesystem;

std::string nodeTarget(const std::string& node, const std::string& root) {
    std::error_code error;
    const std::string path = files::canonical(root + node, error).string();
    return error || !path.starts_with(root) ? node : path.substr(root.size());
}

std::string identityOfLink(const std::string& node, const std::string& target, const std::string& root) {
    constexpr std::string_view pseudoTerminals = "/dev/pts/";
    std::error_code error;
    const bool isLink = files::is_symlink(root + node, error);
    return isLink && target.starts_with(pseudoTerminals) ? "link " + node : std::string();
}

} // namespace varda::device
