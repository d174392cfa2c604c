#pragma once
// Intrusive reference counting for objects shared between a library and its
// hosts.
//
// RefCountedObject holds the one atomic count; it is meant to be a virtual
// base so that a class reaching it along several paths still has one count.
// RefCountedImplementation implements RetainObject / ReleaseObject on it.
// RefCountedInterface is the face a host sees (AddRefCount / ReleaseRefCount);
// a class offering both forwards the interface to the implementation:
//
//   class Filter : public kelcore::RefCountedImplementation, public kelcore::RefCountedInterface {
//   public:
//       void AddRefCount() const override { RetainObject(); }
//       void ReleaseRefCount() const override { ReleaseObject(); }
//   };
//
// A new object starts with one reference, owned by whoever called new; the
// last release deletes it through its virtual destructor. RefPtr keeps one
// reference for as long as it points at an object.

#include <atomic>
#include <cstdint>
#include <utility>

#include <keltemporalxmp/export.hpp>

namespace kelcore {

class KELTXMP_API RefCountedObject {
public:
    virtual ~RefCountedObject() = default;
    virtual void RetainObject() const = 0;
    virtual void ReleaseObject() const = 0;

    RefCountedObject(const RefCountedObject&) = delete;
    RefCountedObject& operator=(const RefCountedObject&) = delete;

protected:
    RefCountedObject() noexcept = default;

    void IncrementRefCount() const noexcept { m_refCount.fetch_add(1, std::memory_order_relaxed); }
    // True when the last reference has gone.
    bool DecrementRefCount() const noexcept { return m_refCount.fetch_sub(1, std::memory_order_acq_rel) == 1; }

private:
    mutable std::atomic<std::int32_t> m_refCount{1};
};

class KELTXMP_API RefCountedImplementation : public virtual RefCountedObject {
public:
    void RetainObject() const override { IncrementRefCount(); }
    void ReleaseObject() const override {
        if (DecrementRefCount()) delete this;
    }
};

class KELTXMP_API RefCountedInterface {
public:
    virtual void AddRefCount() const = 0;
    virtual void ReleaseRefCount() const = 0;
    virtual ~RefCountedInterface() = default;
};

// Owns one reference to a RefCountedObject-derived T.
template <typename T>
class RefPtr {
public:
    RefPtr() noexcept = default;

    // Takes over a reference the caller already holds, e.g. the one of a new object.
    static RefPtr Adopt(T* object) noexcept { return RefPtr(object); }

    RefPtr(const RefPtr& other) noexcept : m_object(other.m_object) {
        if (m_object != nullptr) m_object->RetainObject();
    }
    RefPtr(RefPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    RefPtr& operator=(RefPtr other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~RefPtr() { Reset(); }

    void Reset() noexcept {
        if (T* object = std::exchange(m_object, nullptr)) object->ReleaseObject();
    }

    T* Get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    friend bool operator==(const RefPtr& a, const RefPtr& b) noexcept { return a.m_object == b.m_object; }

private:
    explicit RefPtr(T* object) noexcept : m_object(object) {}

    T* m_object = nullptr;
};

template <typename T, typename... Arguments>
RefPtr<T> MakeRefCounted(Arguments&&... arguments) {
    return RefPtr<T>::Adopt(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace kelcore
