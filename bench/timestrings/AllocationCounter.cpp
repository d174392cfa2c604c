#include "AllocationCounter.hpp"

#include <atomic>
#include <cstdlib>
#include <new>

namespace bench {
namespace {

std::atomic<std::uint64_t> allocations{0};

void* CountedAllocate(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

}  // namespace

std::uint64_t AllocationCount() noexcept {
    return allocations.load(std::memory_order_relaxed);
}

}  // namespace bench

// Over-aligned forms are left to the standard library: nothing measured here uses them.
void* operator new(std::size_t size) {
    return bench::CountedAllocate(size);
}
void* operator new[](std::size_t size) {
    return bench::CountedAllocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
