#include <kelcore/Allocator.hpp>

namespace kelcore {

void* SmallBlockAllocator::Allocate(std::size_t size) {
    return ::operator new(size);
}

void SmallBlockAllocator::Dispose(void* block, std::size_t size) noexcept {
    ::operator delete(block, size);
}

}  // namespace kelcore
