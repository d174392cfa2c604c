#include <gtest/gtest.h>

#include <map>
#include <new>
#include <stdexcept>
#include <vector>

#include <kelcore/Allocator.hpp>
#include <kelcore/Strings.hpp>

using kelcore::STLAllocator;

namespace {

int liveWidgets = 0;

class Widget : public kelcore::Allocated<Widget> {
public:
    explicit Widget(bool fail = false) {
        if (fail) throw std::runtime_error("constructor failed");
        ++liveWidgets;
    }
    ~Widget() { --liveWidgets; }

    char m_payload[40] = {};  // a size of its own for the sized delete
};

}  // namespace

TEST(KelcoreAllocator, ContainersWorkOverTheAllocator) {
    std::vector<int, STLAllocator<int>> numbers;
    for (int i = 0; i < 1000; ++i) numbers.push_back(i);
    EXPECT_EQ(numbers[999], 999);
    std::map<int, kelcore::UTF8String, std::less<>, STLAllocator<std::pair<const int, kelcore::UTF8String>>> names;
    names[2] = "two, long enough to leave the small-string buffer";
    names[1] = "one";
    EXPECT_EQ(names.begin()->second, "one");
    EXPECT_EQ(kelcore::UTF16String(100, u'x').append(u"!").size(), 101u);

    STLAllocator<char> chars{STLAllocator<int>()};  // rebinding copies compare equal
    EXPECT_TRUE(chars == STLAllocator<int>());
    EXPECT_THROW(static_cast<void>(STLAllocator<int>().allocate(std::size_t(-1) / 2)), std::bad_array_new_length);
}

TEST(KelcoreAllocator, AllocatedGivesEveryFormOfNewAndDelete) {
    Widget* plain = new Widget;
    Widget* nothrow = new (std::nothrow) Widget;
    ASSERT_NE(nothrow, nullptr);
    EXPECT_EQ(liveWidgets, 2);
    delete plain;
    delete nothrow;
    alignas(Widget) unsigned char storage[sizeof(Widget)];
    Widget* placed = new (storage) Widget;
    EXPECT_EQ(static_cast<void*>(placed), storage);
    placed->~Widget();
    EXPECT_EQ(liveWidgets, 0);

    // A throwing constructor hands the memory back (checked by the leak sanitizer).
    EXPECT_THROW(new Widget(true), std::runtime_error);
    EXPECT_THROW(new (std::nothrow) Widget(true), std::runtime_error);
    EXPECT_THROW(new (storage) Widget(true), std::runtime_error);
}
