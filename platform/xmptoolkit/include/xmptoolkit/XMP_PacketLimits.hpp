#pragma once
// What a packet may hold before the toolkit parses it. The toolkit's parser and
// tree recurse once per element level and look up each named child among its
// siblings, so a deeper or wider packet could exhaust the stack or take
// quadratic time. Real packets stay far below these.

#include <cstdint>

struct XMP_PacketLimits {
    static constexpr std::uint64_t kMaxNestingDepth = 128;        // element levels
    static constexpr std::uint64_t kMaxNamedChildren = 10000;     // children of one element other than array items
    static constexpr std::uint64_t kMaxChildren = 10000000;       // children of one element, array items included
    static constexpr std::uint64_t kMaxAttributes = 1000;         // attributes of one element
    static constexpr std::uint64_t kMaxPacketBytes = 1ull << 31;  // bytes of packet text
};
