#pragma once
// What a packet may hold before the toolkit parses it. The toolkit's parser and
// tree recurse once per element level and look up each named child among its
// siblings, so a deeper or wider packet could exhaust the stack or take
// quadratic time. Real packets stay far below these: they nest under 20
// levels and keep under a few hundred named properties in one place.

#include <cstdint>

struct XMP_PacketLimits {
    // Element levels, the x:xmpmeta wrapper included. At this depth the
    // toolkit's parse, serialization and release use under 64 KiB of stack.
    static constexpr std::uint64_t kMaxNestingDepth = 128;
    // Children and attributes of one element other than rdf:li array items,
    // and of all its named children together (an rdf:Description's properties
    // join its siblings' in one schema). Each costs a search of its siblings.
    static constexpr std::uint64_t kMaxNamedChildren = 5000;
    // Children of one element, array items included: the tree of a million
    // markers already takes about 10 GB.
    static constexpr std::uint64_t kMaxChildren = 1000000;
    static constexpr std::uint64_t kMaxAttributes = 1000;  // attributes of one element
    // Distinct namespace URIs declared in one packet. The toolkit registers
    // each for the rest of the process (about 330 bytes that are never freed).
    static constexpr std::uint64_t kMaxNamespaces = 1000;
    static constexpr std::uint64_t kMaxPacketBytes = 1ull << 30;  // bytes of packet text
};
