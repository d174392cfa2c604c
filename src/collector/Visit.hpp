#pragma once
// One step of the collection: a document (the top one, or a pantry item) and
// how its timeline lies on the top document's.

#include <keltemporalxmp/collector.hpp>

#include <string>

#include "collector/TimeMapping.hpp"

namespace keltemporalxmp {

// Nested in an exported class, so hidden by hand: only the collector uses them.
struct KELTXMP_LOCAL XMPTemporalMetadataCollector::Visit {
    Visit(std::string pantryPath, const collector::Mapping& mapping, std::int64_t fromDuration, unsigned char mask,
          const collector::Span& clip, int depth, std::string chain);

    bool AtTop() const { return m_pantryPath.empty(); }
    // Where a top-level property of the document sits in the top document's
    // XMP, and the namespace of that path's first step.
    std::string PropertyPath(const char* path) const;
    const char* PathNamespace(const char* propertyNS) const;
    // The span from start to end, cut to the mapped from-span and then to the
    // clip range, each end on its own (a backwards span stays backwards).
    collector::Span Clipped(std::int64_t start, std::int64_t end) const;

    std::string m_pantryPath;  // empty at the top
    collector::Mapping m_mapping;
    std::int64_t m_fromDuration;
    unsigned char m_mask;
    int m_depth;
    std::string m_chain;  // no-repeat mode only

    // On the top document's timeline.
    collector::Interval m_clipRange;
    std::int64_t m_mappedFromEnd;
    collector::Interval m_mappedFromSpan;
    collector::Interval m_mappedFromSpanForOverlap;
};

// A marker's place on the top document's timeline.
struct KELTXMP_LOCAL XMPTemporalMetadataCollector::MarkerPlacement {
    collector::Span m_mapped;
    collector::Span m_clipped;
    const std::string& m_instanceID;
    const std::string& m_trackName;
    const std::string& m_trackType;
    const char* m_partMapping;
};

}  // namespace keltemporalxmp
