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
};

}  // namespace

TEST(KelcoreRefCounted, LastReleaseThroughEitherFaceOrRefPtrDestroysTheObject) {
    {
        kelcore::RefPtr<Shared> first = kelcore::MakeRefCounted<Shared>();
        kelcore::RefPtr<Shared> copy = first;
        kelcore::RefPtr<Shared> moved = std::move(copy);
        EXPECT_FALSE(copy);
        first.Reset();
        kelcore::RefCountedInterface* hostView = moved.Get();
        hostView->AddRefCount();
        hostView->ReleaseRefCount();
        EXPECT_EQ(liveObjects, 1);
    }
    EXPECT_EQ(liveObjects, 0);
}
