#pragma once
// TickTime: one signed 64-bit count of ticks on a media timeline.

#include <compare>
#include <cstdint>

namespace kelmediatypes {

class TickTime {
public:
    static constexpr std::int64_t kTicksPerSecond = 254016000000;

    constexpr explicit TickTime(std::int64_t ticks = 0) noexcept : m_ticks(ticks) {}

    constexpr std::int64_t GetTicks() const noexcept { return m_ticks; }

    friend constexpr bool operator==(TickTime, TickTime) noexcept = default;
    friend constexpr auto operator<=>(TickTime, TickTime) noexcept = default;

private:
    std::int64_t m_ticks;
};

}  // namespace kelmediatypes
