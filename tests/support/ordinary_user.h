#pragma once

#ifdef _WIN32

namespace varda::test {

/// On this system a test has the rights of who runs it, to its end.
class OrdinaryUser {
public:
    OrdinaryUser() {}
};

} // namespace varda::test

#else

#include <stdexcept>

#include <unistd.h>

namespace varda::test {

/// Gives up the rights of the administrator, whom no permission stops, until the end of the scope; does
/// nothing for another user.
class OrdinaryUser {
public:
    OrdinaryUser() : isAdministrator_(::geteuid() == 0) {
        constexpr uid_t nobody = 65534;
        if (isAdministrator_ &&
            (::setresgid(nobody, nobody, keep) != 0 || ::setresuid(nobody, nobody, keep) != 0)) {
            throw std::runtime_error("The rights of the administrator cannot be given up");
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    OrdinaryUser(OrdinaryUser&&) = delete;
    OrdinaryUser& operator=(OrdinaryUser&&) = delete;
    ~OrdinaryUser() {
        if (isAdministrator_ && (::setresuid(0, 0, keep) != 0 || ::setresgid(0, 0, keep) != 0)) {
            ::_exit(1);
        }
    }

private:
    static constexpr uid_t keep = static_cast<uid_t>(-1);

    bool isAdministrator_;
};

} // namespace varda::test

#endif
