#include "collector/Visit.hpp"

#include <utility>

#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp {

using collector::Interval;
using collector::kUnspecified;

XMPTemporalMetadataCollector::Visit::Visit(std::string pantryPath, const collector::Mapping& mapping,
                                           std::int64_t fromDuration, unsigned char mask, const collector::Span& clip,
                                           int depth, std::string chain)
    : m_pantryPath(std::move(pantryPath)),
      m_mapping(mapping),
      m_fromDuration(fromDuration),
      m_mask(mask),
      m_depth(depth),
      m_chain(std::move(chain)),
      m_clipRange(Interval::Of(clip.Forwards())) {
    const collector::Span from{mapping.m_fromStart, fromDuration};
    const std::int64_t fromEnd = from.End();
    if (mapping.Holds()) {
        m_mappedFromEnd = collector::AddTimes(mapping.m_toStart, mapping.m_heldFor);
    } else {
        m_mappedFromEnd = fromEnd == kUnspecified ? kUnspecified : mapping(fromEnd);
    }
    m_mappedFromSpan = Interval::Between(mapping.m_toStart, m_mappedFromEnd);
    m_mappedFromSpanForOverlap = Interval::ForOverlap(mapping.m_toStart, m_mappedFromEnd);
}

std::string XMPTemporalMetadataCollector::Visit::PropertyPath(const char* path) const {
    return AtTop() ? std::string(path) : m_pantryPath + "/" + path;
}

// Inside a pantry item every path starts at xmpMM:Pantry.
const char* XMPTemporalMetadataCollector::Visit::PathNamespace(const char* propertyNS) const {
    return AtTop() ? propertyNS : kXMP_NS_XMP_MM;
}

collector::Span XMPTemporalMetadataCollector::Visit::Clipped(std::int64_t start, std::int64_t end) const {
    const std::int64_t clippedStart = m_clipRange.Clamp(m_mappedFromSpan.Clamp(start));
    const std::int64_t clippedEnd = m_clipRange.Clamp(m_mappedFromSpan.Clamp(end));
    return {clippedStart, collector::SubtractTimes(clippedEnd, clippedStart)};
}
}  // namespace keltemporalxmp
