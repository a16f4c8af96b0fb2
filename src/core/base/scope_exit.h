#pragma once

#include <utility>

namespace varda::inline core {

/// Runs an action when its scope ends, however it ends. The action must not throw.
template <typename Action>
class ScopeExit {
public:
    explicit ScopeExit(Action action) : action_(std::move(action)) {}
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;
    ~ScopeExit() { action_(); }

private:
    Action action_;
};

} // namespace varda::core
