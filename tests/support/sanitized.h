#pragma once

namespace varda {

/// Whether a sanitizer watches this program. It keeps freed memory for a while and opens files of its own, so
/// that figures about memory and about file handles say nothing there.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#elif defined(__has_feature)
constexpr bool isSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool isSanitized = false;
#endif

} // namespace varda
