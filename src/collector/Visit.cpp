#include "collector/Visit.hpp"

#include <utility>

namespace keltemporalxmp::collector {

Visit::Visit(const Mapping& mapping, std::int64_t fromDuration, unsigned char mask, const Span& clip, int depth,
             std::string chain)
    : m_mapping(mapping),
      m_fromDuration(fromDuration),
      m_mask(mask),
      m_depth(depth),
      m_chain(std::move(chain)),
      m_clipRange(Interval::Of(clip.Forwards())) {
    const Span from{mapping.m_fromStart, fromDuration};
    const std::int64_t fromEnd = from.End();
    m_mappedFromEnd = fromEnd == kUnspecifiedTicks ? kUnspecifiedTicks : mapping(fromEnd);
    m_mappedFromSpan = Interval::Between(mapping.m_toStart, m_mappedFromEnd);
    m_mappedFromSpanForOverlap = Interval::ForOverlap(mapping.m_toStart, m_mappedFromEnd);
}

Span Visit::Clipped(std::int64_t start, std::int64_t end) const {
    const std::int64_t clippedStart = m_clipRange.Clamp(m_mappedFromSpan.Clamp(start));
    const std::int64_t clippedEnd = m_clipRange.Clamp(m_mappedFromSpan.Clamp(end));
    return {clippedStart, SaturatingSubtract(clippedEnd, clippedStart)};
}

}  // namespace keltemporalxmp::collector
