#include <gtest/gtest.h>

#include <list>
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
    explicit Widget(int value, bool fail = false) : m_value(value) {
        if (fail) throw std::runtime_error("constructor failed");
        ++liveWidgets;
    }
    ~Widget() { --liveWidgets; }
    int GetValue() const { return m_value; }

private:
    int m_value;
    char m_padding[40] = {};
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

    kelcore::UTF16String text(100, u'x');
    text += u"!";
    EXPECT_EQ(text.size(), 101u);

    std::list<double, STLAllocator<double>> values(3, 1.5);
    EXPECT_EQ(values.size(), 3u);
}

TEST(KelcoreAllocator, AllInstancesAreInterchangeable) {
    STLAllocator<int> ints;
    STLAllocator<char> chars(ints);
    EXPECT_TRUE(ints == chars);
    EXPECT_FALSE(ints != STLAllocator<int>());

    int* block = ints.allocate(16);
    STLAllocator<int>(chars).deallocate(block, 16);
    EXPECT_THROW(static_cast<void>(ints.allocate(std::size_t(-1) / 2)), std::bad_array_new_length);
}

TEST(KelcoreAllocator, AllocatedGivesEveryFormOfNewAndDelete) {
    Widget* plain = new Widget(1);
    Widget* nothrow = new (std::nothrow) Widget(2);
    ASSERT_NE(nothrow, nullptr);
    EXPECT_EQ(plain->GetValue() + nothrow->GetValue(), 3);
    EXPECT_EQ(liveWidgets, 2);
    delete plain;
    delete nothrow;
    EXPECT_EQ(liveWidgets, 0);

    alignas(Widget) unsigned char storage[sizeof(Widget)];
    Widget* placed = new (storage) Widget(3);
    EXPECT_EQ(static_cast<void*>(placed), storage);
    placed->~Widget();

    // A throwing constructor hands the memory back (checked by the leak sanitizer).
    EXPECT_THROW(new Widget(4, true), std::runtime_error);
    EXPECT_THROW(new (std::nothrow) Widget(5, true), std::runtime_error);
    EXPECT_THROW(new (storage) Widget(6, true), std::runtime_error);
    EXPECT_EQ(liveWidgets, 0);
}
