#include "device/group_name_posix.h"

#include <grp.h>

#include <vector>

namespace varda::device {

std::string groupName(gid_t id) {
    constexpr std::size_t room = 65536; // for the names of its members
    std::vector<char> texts(room);
    group entry{};
    group* found = nullptr;
    const bool isKnown =
        ::getgrgid_r(id, &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr;
    return isKnown ? entry.gr_name : std::to_string(id);
}

} // namespace varda::device
