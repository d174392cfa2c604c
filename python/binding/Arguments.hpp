#pragma once
// Python values taken apart with clear errors (TypeError for a wrong type,
// ValueError for a wrong value) and made again: text, tick counts, rates.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "Bindings.hpp"

namespace keltemporalxmp::python {

inline constexpr std::int64_t kTimeUnspecified = INT64_MAX;

struct Rate {
    std::int64_t numerator = 1;
    std::int64_t denominator = 1;
    friend bool operator==(const Rate&, const Rate&) = default;
};

// One frame per tick: holds every tick count exactly.
inline constexpr Rate kTickRate{254016000000, 1};

// str as UTF-8; text with NUL bytes is refused, as no XMP value can hold one.
std::string TextFrom(py::handle text, const char* argument);
// An int that fits 64 bits; None is the unspecified time.
std::int64_t TicksFrom(py::handle ticks, const char* argument);
py::object TicksObject(std::int64_t ticks);
// None, or a (numerator, denominator) pair of positive ints.
std::optional<Rate> RateFrom(py::handle rate, const char* argument);
py::object RateObject(const std::optional<Rate>& rate);

}  // namespace keltemporalxmp::python
