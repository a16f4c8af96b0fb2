#pragma once

namespace varda {

/// Whether a sanitizer watches this program. It keeps freed memory for a while and opens files of its own, so
/// that figures about memory and about file handles say nothing there.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

} // namespace varda
