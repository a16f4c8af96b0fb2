#include "allocation_count.h"

#include <atomic>
#include <cstddef>

#include <cerrno>

// The system's own, which the functions below hand on to.
extern "C" {
void* __libc_malloc(std::size_t size);                          // NOLINT
void* __libc_calloc(std::size_t count, std::size_t size);       // NOLINT
void* __libc_realloc(void* memory, std::size_t size);           // NOLINT
void* __libc_memalign(std::size_t alignment, std::size_t size); // NOLINT
}

namespace {

constinit std::atomic<long long> count = 0;
constinit std::atomic<long long> bytes = 0;

void add(std::size_t size) {
    count.fetch_add(1, std::memory_order_relaxed);
    bytes.fetch_add(static_cast<long long>(size), std::memory_order_relaxed);
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): as the system's library has them
extern "C" {

void* malloc(std::size_t size) {
    add(size);
    return __libc_malloc(size);
}

void* calloc(std::size_t entries, std::size_t size) {
    add(entries * size);
    return __libc_calloc(entries, size);
}

void* realloc(void* memory, std::size_t size) {
    add(size);
    return __libc_realloc(memory, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
    add(size);
    return __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    *memory = memalign(alignment, size);
    return *memory == nullptr ? ENOMEM : 0;
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)

namespace varda::bench {

Allocations allocations() { return {count.load(), bytes.load()}; }

} // namespace varda::bench
