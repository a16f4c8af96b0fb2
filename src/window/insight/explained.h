#pragma once

#include "core/base/bytes.h"

#include <QString>

#include <cstddef>

namespace varda::window {

/// Bytes to explain, and what is known of them.
struct Explained {
    QString title;        ///< what they are
    QString sentence;     ///< what became of them, or what is odd about them
    Bytes bytes;          ///< as many as were kept
    std::size_t size = 0; ///< as many as there were
    Bytes request;        ///< what they may be the answer to

    bool operator==(const Explained&) const = default;
};

} // namespace varda::window
