#pragma once
// Memory for the library's small objects and standard containers.
//
// SmallBlockAllocator hands blocks straight to the global operator new: the
// system allocator already keeps per-thread caches of small blocks, and a pool
// of our own would have to beat it in a benchmark before it earns its place.
// Callers still give the size back on Dispose so a pooled version can drop in.

#include <cstddef>
#include <limits>
#include <new>

#include <keltemporalxmp/export.hpp>

namespace kelcore {

class KELTXMP_API SmallBlockAllocator {
public:
    // Throws std::bad_alloc when no memory is left.
    static void* Allocate(std::size_t size);
    // size must be the one given to Allocate; a null block is ignored.
    static void Dispose(void* block, std::size_t size) noexcept;
};

// Standard-container allocator over SmallBlockAllocator. Stateless: every
// instance can free what any other allocated.
template <typename T>
class STLAllocator {
public:
    using value_type = T;

    STLAllocator() noexcept = default;
    template <typename U>
    STLAllocator(const STLAllocator<U>&) noexcept {}

    T* allocate(std::size_t count) {
        static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "over-aligned types need another allocator");
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) throw std::bad_array_new_length();
        return static_cast<T*>(SmallBlockAllocator::Allocate(count * sizeof(T)));
    }

    void deallocate(T* block, std::size_t count) noexcept { SmallBlockAllocator::Dispose(block, count * sizeof(T)); }

    template <typename U>
    friend bool operator==(const STLAllocator&, const STLAllocator<U>&) noexcept {
        return true;
    }
};

// Base that gives class T its own operator new/delete over SmallBlockAllocator:
//   class Widget : public kelcore::Allocated<Widget> { ... };
// Meant for objects whose most-derived type is T, since the delete that
// matches a failed nothrow new can only know sizeof(T).
template <typename T>
class Allocated {
public:
    static void* operator new(std::size_t size) { return SmallBlockAllocator::Allocate(size); }

    static void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
        try {
            return SmallBlockAllocator::Allocate(size);
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
    }

    static void* operator new(std::size_t, void* where) noexcept { return where; }

    static void operator delete(void* block, std::size_t size) noexcept { SmallBlockAllocator::Dispose(block, size); }

    // Called only when a constructor throws after nothrow new.
    static void operator delete(void* block, const std::nothrow_t&) noexcept {
        SmallBlockAllocator::Dispose(block, sizeof(T));
    }

    static void operator delete(void*, void*) noexcept {}

protected:
    Allocated() noexcept = default;
    ~Allocated() = default;
};

}  // namespace kelcore
