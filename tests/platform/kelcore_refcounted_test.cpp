#include <gtest/gtest.h>

#include <thread>
#include <vector>

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

private:
    char m_payload[24] = {};
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
        shared = shared;
        shared.Reset();
        EXPECT_EQ(liveObjects, 1);
    }
    EXPECT_EQ(liveObjects, 0);
    EXPECT_FALSE(kelcore::RefPtr<Shared>::Share(nullptr));
}

TEST(KelcoreRefCounted, CountsStayExactAcrossThreads) {
    kelcore::RefPtr<Shared> object = kelcore::MakeRefCounted<Shared>();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([object] {
            for (int i = 0; i < 1000; ++i) kelcore::RefPtr<Shared> copy = object;
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(liveObjects, 1);
    object.Reset();
    EXPECT_EQ(liveObjects, 0);
}
