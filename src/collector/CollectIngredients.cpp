// Follows a document's ingredients into the pantry: each overlapping use is
// collected as a document of its own, mapped through the use's parts.

#include <keltemporalxmp/docops.hpp>

#include <utility>

#include "collector/Walk.hpp"

namespace keltemporalxmp::collector {
namespace {

using C = XMPTemporalMetadataCollector;

void AppendPart(std::string& chain, const Span& span, const std::string& path) {
    std::string part;
    XMPDocOpsTemporal::CreatePartString(&part, span.m_start, 0, 0, span.m_duration, 0, 0, kUnspecifiedTicks, path.c_str());
    chain.append(part).append(1, ';');
}

}  // namespace

void Walk::CollectIngredients(const DocumentRecords& document, const Visit& visit) {
    for (const IngredientUse& use : document.m_ingredients) {
        Step(document.m_instanceID);
        const DocumentRecords* source = m_source.Find(use.m_instanceID, Content::kIngredients);
        if (source == nullptr) {
            continue;
        }
        const std::int64_t toStart = visit.m_mapping(use.m_to.m_start);
        const Interval placed = Interval::ForOverlap(toStart, visit.m_mapping(use.m_to.End()));
        const std::optional<double> scale = use.Scale();
        if (!placed.Overlaps(visit.m_mappedFromSpanForOverlap) || !scale) {
            continue;
        }
        const Interval target = placed.Intersection(visit.m_mappedFromSpanForOverlap);
        const Interval clipRange = target.ClampedInto(visit.m_clipRange);
        std::string chain;
        if ((visit.m_mask & C::kNoRepeat) != 0) {
            chain = visit.m_chain;
            AppendPart(chain, use.m_from, use.m_instanceID);
            AppendPart(chain, target.AsSpan(), "");
            AppendPart(chain, clipRange.AsSpan(), "");
        }
        const bool masked = use.m_markersMasked && (visit.m_mask & C::kIgnoreMaskMarkers) == 0;
        const auto mask = static_cast<unsigned char>(
            masked ? visit.m_mask & ~(C::kCollectDocumentMarkers | C::kCollectIngredientMarkers) : visit.m_mask);
        Collect(*source, Visit(Mapping{use.m_from.m_start, toStart, visit.m_mapping.m_scale * *scale},
                               use.m_from.m_duration, mask, clipRange.AsSpan(), visit.m_depth + 1, std::move(chain)));
    }
}

}  // namespace keltemporalxmp::collector
