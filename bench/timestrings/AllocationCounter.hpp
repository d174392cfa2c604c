#pragma once
// Counts every call of the global operator new in this program, the
// library's included, so a benchmark can report allocations per iteration.

#include <cstdint>

namespace bench {

std::uint64_t AllocationCount() noexcept;

}  // namespace bench
