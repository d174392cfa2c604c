#include <gtest/gtest.h>

#include <kelcore/Allocator.hpp>
#include <kelcore/RefCounted.hpp>

namespace {

int liveObjects = 0;

// Laid out like the library's shared objects: both counting faces, own allocation.
class Shared : public kelcore::RefCountedImplementation,
               public kelcore::RefCountedInterface,
               public kelcore::Allocated<Shared> {
public:
    Shared() { ++liveObjects; }
    ~Shared() override { --liveObjects; }
    void AddRefCount() const override { RetainObject(); }
    void ReleaseRefCount() const override { ReleaseObject(); }

    char m_payload[24] = {};  // a size of its own for the sized delete
};

}  // namespace

TEST(KelcoreRefCounted, LastReleaseDestroysTheObject) {
    Shared* object = new Shared;
    object->RetainObject();
    kelcore::RefCountedInterface* hostView = object;
    hostView->AddRefCount();
    object->ReleaseObject();
    hostView->ReleaseRefCount();
    EXPECT_EQ(liveObjects, 1);
    static_cast<kelcore::RefCountedObject*>(object)->ReleaseObject();
    EXPECT_EQ(liveObjects, 0);
}

TEST(KelcoreRefCounted, RefPtrHoldsOneReferenceEach) {
    {
        kelcore::RefPtr<Shared> first = kelcore::MakeRefCounted<Shared>();
        kelcore::RefPtr<Shared> copy = first;
        kelcore::RefPtr<Shared> shared = kelcore::RefPtr<Shared>::Share(first.Get());
        kelcore::RefPtr<Shared> moved = std::move(copy);
        EXPECT_FALSE(copy);
        EXPECT_EQ(moved, first);
        first = kelcore::RefPtr<Shared>();
        shared = moved;
        shared.Reset();
        EXPECT_EQ(liveObjects, 1);
    }
    EXPECT_EQ(liveObjects, 0);
}
