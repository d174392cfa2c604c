#pragma once
// The frame rates met in practice, handed to a conversion as compile-time
// constants. Its divisions by them, and by what follows from them (ticks per
// frame), then compile to multiplications, several times faster than the
// division instruction that a divisor known only at run time needs.

#include <cstdint>
#include <type_traits>

#include <kelmediatypes/TickTime.hpp>

namespace keltemporalxmp {
namespace timestrings {

template <std::int64_t kValue>
using Constant = std::integral_constant<std::int64_t, kValue>;

// convert(numerator, denominator, ticksPerSecond), each argument a Constant when
// the rate is a common one at the usual tick rate, an std::int64_t otherwise.
// `convert` must give the same result either way; inlined, so that it does.
template <class Convert>
[[gnu::always_inline]] inline auto AtCommonRate(std::int64_t numerator, std::int64_t denominator,
                                                std::int64_t ticksPerSecond, const Convert& convert) {
    using Ticks = Constant<kelmediatypes::TickTime::kTicksPerSecond>;
    using One = Constant<1>;
    if (ticksPerSecond == Ticks::value && denominator == 1) {
        switch (numerator) {
            case 1:
                return convert(One{}, One{}, Ticks{});
            case 24:
                return convert(Constant<24>{}, One{}, Ticks{});
            case 25:
                return convert(Constant<25>{}, One{}, Ticks{});
            case 30:
                return convert(Constant<30>{}, One{}, Ticks{});
            case 50:
                return convert(Constant<50>{}, One{}, Ticks{});
            case 60:
                return convert(Constant<60>{}, One{}, Ticks{});
            case 1000:
                return convert(Constant<1000>{}, One{}, Ticks{});
            case 44100:
                return convert(Constant<44100>{}, One{}, Ticks{});
            case 48000:
                return convert(Constant<48000>{}, One{}, Ticks{});
            default:
                break;
        }
    } else if (ticksPerSecond == Ticks::value && denominator == 1001) {
        using Denominator = Constant<1001>;
        switch (numerator) {
            case 24000:
                return convert(Constant<24000>{}, Denominator{}, Ticks{});
            case 30000:
                return convert(Constant<30000>{}, Denominator{}, Ticks{});
            case 60000:
                return convert(Constant<60000>{}, Denominator{}, Ticks{});
            default:
                break;
        }
    }
    return convert(numerator, denominator, ticksPerSecond);
}

}  // namespace timestrings
}  // namespace keltemporalxmp
