#pragma once

#include <stdexcept>

#include <unistd.h>

namespace varda::test {

/// Gives up the rights of the administrator, whom no permission stops, until the end of the scope; does
/// nothing for another user.
class OrdinaryUser {
public:
    OrdinaryUser() : isAdministrator_(::geteuid() == 0) {
        constexpr uid_t nobody = 65534;
        if (isAdministrator_ && (::setegid(nobody) != 0 || ::seteuid(nobody) != 0)) {
            throw std::runtime_error("The rights of the administrator cannot be given up");
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    OrdinaryUser(OrdinaryUser&&) = delete;
    OrdinaryUser& operator=(OrdinaryUser&&) = delete;
    ~OrdinaryUser() {
        if (isAdministrator_ && (::seteuid(0) != 0 || ::setegid(0) != 0)) {
            ::_exit(1);
        }
    }

private:
    bool isAdministrator_;
};

} // namespace varda::test
