#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace varda::test {

/// Takes all handles of the process but a few, until the end of the scope.
class FewHandles {
public:
    explicit FewHandles(std::size_t left) {
        ::getrlimit(RLIMIT_NOFILE, &former_);
        rlimit lower = former_;
        lower.rlim_cur = std::min<rlim_t>(former_.rlim_cur, 512);
        ::setrlimit(RLIMIT_NOFILE, &lower);
        for (int handle = ::open("/", O_RDONLY); handle >= 0; handle = ::open("/", O_RDONLY)) {
            taken_.push_back(handle);
        }
        for (; left > 0 && !taken_.empty(); --left) {
            ::close(taken_.back());
            taken_.pop_back();
        }
    }
    FewHandles(const FewHandles&) = delete;
    FewHandles& operator=(const FewHandles&) = delete;
    FewHandles(FewHandles&&) = delete;
    FewHandles& operator=(FewHandles&&) = delete;
    ~FewHandles() {
        for (const int handle : taken_) {
            ::close(handle);
        }
        ::setrlimit(RLIMIT_NOFILE, &former_);
    }

private:
    rlimit former_{};
    std::vector<int> taken_;
};

/// Lets nothing be opened until the end of the scope, also where another thread gives a handle back
/// meanwhile, as the one that lists a file dialog's folder does. Not where events are waited for: the system
/// refuses to wait for handles above the limit.
class NoMoreHandles {
public:
    NoMoreHandles() {
        ::getrlimit(RLIMIT_NOFILE, &former_);
        const rlimit none{.rlim_cur = 0, .rlim_max = former_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    NoMoreHandles(const NoMoreHandles&) = delete;
    NoMoreHandles& operator=(const NoMoreHandles&) = delete;
    NoMoreHandles(NoMoreHandles&&) = delete;
    NoMoreHandles& operator=(NoMoreHandles&&) = delete;
    ~NoMoreHandles() { ::setrlimit(RLIMIT_NOFILE, &former_); }

private:
    rlimit former_{};
};

} // namespace varda::test
