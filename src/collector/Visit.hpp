#pragma once
// One step of the collection: a document (the top one, or one of the pantry)
// and how its timeline lies on the top document's.

#include <cstdint>
#include <string>

#include "collector/TimeMapping.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] collector {

struct Visit {
    Visit(const Mapping& mapping, std::int64_t fromDuration, unsigned char mask, const Span& clip, int depth,
          std::string chain);

    bool AtTop() const { return m_depth == 0; }
    // The span from start to end, cut to the mapped from-span and then to the
    // clip range, each end on its own (a backwards span stays backwards).
    Span Clipped(std::int64_t start, std::int64_t end) const;

    Mapping m_mapping;
    std::int64_t m_fromDuration;
    unsigned char m_mask;
    int m_depth;
    std::string m_chain;  // no-repeat mode only

    // On the top document's timeline.
    Interval m_clipRange;
    std::int64_t m_mappedFromEnd;
    Interval m_mappedFromSpan;
    Interval m_mappedFromSpanForOverlap;
};

// A marker's place on the top document's timeline.
struct MarkerPlacement {
    Span m_mapped;
    Span m_clipped;
    const std::string& m_instanceID;
    const std::string& m_trackName;
    const std::string& m_trackType;
    const char* m_partMapping;
};

}  // namespace collector
}  // namespace keltemporalxmp
