#include <kelcore/Allocator.hpp>

#include <cstddef>
#include <memory>

namespace kelcore {

// std::allocator passes the size on to operator delete where the compiler
// supports sized deallocation, so the sanitizers can check it.
void* SmallBlockAllocator::Allocate(std::size_t size) {
    return std::allocator<std::byte>().allocate(size);
}

void SmallBlockAllocator::Dispose(void* block, std::size_t size) noexcept {
    if (block == nullptr) return;
    std::allocator<std::byte>().deallocate(static_cast<std::byte*>(block), size);
}

}  // namespace kelcore
