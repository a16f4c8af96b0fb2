#pragma once

#include "core/base/runtime_error.h"

#include <optional>
#include <string>

namespace varda::test {

/// The RuntimeError that `call` throws; nothing where it returns.
template <typename Call>
std::optional<RuntimeError> raisedBy(Call&& call) {
    try {
        call();
    } catch (const RuntimeError& error) {
        return error;
    }
    return std::nullopt;
}

/// The number of the RuntimeError that `call` throws; 0 where it returns.
template <typename Call>
int numberRaisedBy(Call&& call) {
    const auto error = raisedBy(call);
    return error ? error->number() : 0;
}

/// What the RuntimeError that `call` throws says of what helps; empty where it returns.
template <typename Call>
std::string adviceOf(Call&& call) {
    const auto error = raisedBy(call);
    return error ? error->advice() : std::string();
}

} // namespace varda::test
