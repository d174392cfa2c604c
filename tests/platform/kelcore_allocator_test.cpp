#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

#include <kelcore/Allocator.hpp>

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

TEST(KelcoreAllocator, ContainersAndEveryFormOfNewAndDelete) {
    std::vector<int, kelcore::STLAllocator<int>> numbers(1000, 7);
    EXPECT_EQ(numbers[999], 7);
    EXPECT_THROW(static_cast<void>(kelcore::STLAllocator<int>().allocate(std::size_t(-1) / 2)),
                 std::bad_array_new_length);

    Widget* plain = new Widget;
    Widget* nothrow = new (std::nothrow) Widget;
    ASSERT_NE(nothrow, nullptr);
    EXPECT_EQ(liveWidgets, 2);
    delete plain;
    delete nothrow;
    EXPECT_EQ(liveWidgets, 0);
    // A throwing constructor hands the memory back (checked by the leak sanitizer).
    EXPECT_THROW(new Widget(true), std::runtime_error);
    EXPECT_THROW(new (std::nothrow) Widget(true), std::runtime_error);
}
