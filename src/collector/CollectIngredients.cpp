// Follows a document's ingredients into the pantry: each overlapping use is
// collected as a document of its own, mapped through the use's parts.

#include <keltemporalxmp/collector.hpp>
#include <keltemporalxmp/docops.hpp>

#include "collector/IngredientUse.hpp"
#include "collector/Visit.hpp"
#include "docops/IngredientLayout.hpp"

namespace keltemporalxmp {

using collector::Interval;
using collector::Span;

namespace {

void AppendPart(std::string& chain, const Span& span, const std::string& path) {
    std::string part;
    XMPDocOpsTemporal::CreatePartString(&part, span.m_start, 0, 0, span.m_duration, 0, 0, collector::kUnspecified,
                                        path.c_str());
    chain.append(part).append(1, ';');
}

}  // namespace

void XMPTemporalMetadataCollector::CollectIngredients(const SXMPMeta& xmp, const Visit& visit) {
    const std::string listPath = visit.PropertyPath(docops::kIngredientsPath);
    for (const docops::ListItem& item : docops::StructItems(xmp, listPath.c_str())) {
        const std::optional<collector::IngredientUse> use =
            collector::ReadIngredientUse(xmp, item.m_path, (visit.m_mask & kIgnoreMaskMarkers) == 0);
        if (!use) {
            continue;
        }
        const auto pantryItem = m_pantryIndex.find(use->m_instanceID);
        if (pantryItem == m_pantryIndex.end()) {
            continue;
        }
        const std::optional<Span> placedSpan = visit.m_mapping.MapSpan(use->m_to.m_start, use->m_to.End());
        const std::optional<collector::Mapping> mapping = use->MappingUnder(visit.m_mapping);
        if (!placedSpan || !mapping) {
            continue;
        }
        const Interval placed = Interval::ForOverlap(placedSpan->m_start, placedSpan->End());
        if (!placed.Overlaps(visit.m_mappedFromSpanForOverlap)) {
            continue;
        }
        const Interval target = placed.Intersection(visit.m_mappedFromSpanForOverlap);
        const Interval clipRange = target.ClampedInto(visit.m_clipRange);
        std::string chain;
        if ((visit.m_mask & kNoRepeat) != 0) {
            chain = visit.m_chain;
            AppendPart(chain, use->m_from, use->m_instanceID);
            AppendPart(chain, target.AsSpan(), "");
            AppendPart(chain, clipRange.AsSpan(), "");
        }
        const unsigned char mask =
            use->m_markersMasked ? visit.m_mask & ~(kCollectDocumentMarkers | kCollectIngredientMarkers) : visit.m_mask;
        Collect(xmp, Visit(pantryItem->second, *mapping, use->m_from.m_duration, static_cast<unsigned char>(mask),
                           clipRange.AsSpan(), visit.m_depth + 1, std::move(chain)));
    }
}

}  // namespace keltemporalxmp
