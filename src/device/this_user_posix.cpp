#include "device/this_user_posix.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace varda::device {
namespace {

struct User {
    std::string name;
    gid_t group;
};

std::optional<User> thisUser() {
    constexpr std::size_t room = 16384;
    std::vector<char> texts(room);
    passwd entry{};
    passwd* found = nullptr;
    const bool isKnown =
        ::getpwuid_r(::geteuid(), &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr;
    return isKnown ? std::optional(User{entry.pw_name, entry.pw_gid}) : std::nullopt;
}

} // namespace

std::string userName() {
    const auto user = thisUser();
    return user ? user->name : std::to_string(::geteuid());
}

bool hasJoined(gid_t group) {
    const auto user = thisUser();
    if (!user) {
        return false;
    }
    int count = 1024;
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    const bool isWhole = ::getgrouplist(user->name.c_str(), user->group, groups.data(), &count) >= 0;
    groups.resize(isWhole ? static_cast<std::size_t>(count) : 0);
    return std::ranges::find(groups, group) != groups.end();
}

} // namespace varda::device
