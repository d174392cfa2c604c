// The collection step: a document's report-back, its own markers, then its
// ingredients, each through the pantry.

#include <keltemporalxmp/collector.hpp>

#include <utility>

#include "collector/Visit.hpp"
#include "docops/IngredientLayout.hpp"

namespace keltemporalxmp {

using collector::Span;
using timestrings::SaturatingSubtract;

XMPTemporalMetadataCollector::XMPTemporalMetadataCollector(const SXMPMeta& xmp, std::int64_t rangeStart,
                                                           std::int64_t rangeDuration)
    : XMPTemporalMetadataCollector(kDefaultCollectionMask, xmp, rangeStart, rangeDuration) {}

// The top document is mapped onto itself.
XMPTemporalMetadataCollector::XMPTemporalMetadataCollector(unsigned char mask, const SXMPMeta& xmp,
                                                           std::int64_t rangeStart, std::int64_t rangeDuration) {
    IndexPantry(xmp);
    Collect(xmp, Visit("", collector::Mapping{rangeStart, rangeStart, 1.0}, rangeDuration, mask,
                       Span{rangeStart, rangeDuration}, 0, ""));
}

XMPTemporalMetadataCollector::~XMPTemporalMetadataCollector() = default;

// An instance ID held by two items keeps the first.
void XMPTemporalMetadataCollector::IndexPantry(const SXMPMeta& xmp) {
    for (docops::ListItem& item : docops::StructItems(xmp, docops::kPantryPath)) {
        std::string instanceID = docops::PantryItemInstanceID(xmp, item.m_path);
        if (!instanceID.empty()) {
            m_pantryIndex.emplace(std::move(instanceID), std::move(item.m_path));
        }
    }
}

void XMPTemporalMetadataCollector::Collect(const SXMPMeta& xmp, const Visit& visit) {
    const std::string instanceID =
        docops::ReadText(xmp, visit.PathNamespace(kXMP_NS_XMP_MM), visit.PropertyPath("xmpMM:InstanceID"));
    if (visit.m_depth > kMaxNestingDepth) {
        const std::string message = "Collecting temporal metadata: ingredients nested more than " +
                                    std::to_string(kMaxNestingDepth) + " deep at instance ID \"" + instanceID + "\" (" +
                                    visit.m_pantryPath + ")";
        throw XMP_Error(kXMPErr_BadXMP, message.c_str());
    }
    if (++m_documentVisits > kMaxDocumentVisits) {
        const std::string message = "Collecting temporal metadata: more than " + std::to_string(kMaxDocumentVisits) +
                                    " ingredient documents visited, at instance ID \"" + instanceID + "\" (" +
                                    visit.m_pantryPath + ")";
        throw XMP_Error(kXMPErr_BadXMP, message.c_str());
    }
    if ((visit.m_mask & kNoRepeat) != 0 &&
        !m_visited.insert(visit.m_chain.empty() ? instanceID + "/-noqualifier-" : visit.m_chain).second) {
        return;
    }
    CollectComponent(visit, instanceID);
    if ((visit.m_mask & (visit.AtTop() ? kCollectDocumentMarkers : kCollectIngredientMarkers)) != 0) {
        CollectMarkers(xmp, visit, instanceID);
    }
    // Nothing below can add a record without these.
    if ((visit.m_mask & (kCollectComponentMetadata | kCollectIngredientMarkers)) != 0) {
        CollectIngredients(xmp, visit);
    }
}

// The document's span on the top timeline, as far as its from-span reaches.
void XMPTemporalMetadataCollector::CollectComponent(const Visit& visit, const std::string& instanceID) {
    if ((visit.m_mask & (visit.AtTop() ? kCollectBaseDocument : kCollectComponentMetadata)) == 0) {
        return;
    }
    const std::int64_t toStart = visit.m_mapping.m_toStart;
    Span span{toStart, SaturatingSubtract(visit.m_mappedFromEnd, toStart)};
    const bool reversed = !visit.AtTop() && visit.m_mapping.m_scale < 0.0;
    if (reversed && (visit.m_mask & kReversedComponentFromEnd) != 0) {
        span = span.Reversed();
    }
    const Span clipped = visit.Clipped(span.m_start, span.End());
    m_collection.emplace(
        span.m_start,
        XMPTemporalMetadataInfo(visit.AtTop() ? "Base Document" : "ComponentMetadata", instanceID.c_str(), span.m_start,
                                1, 1, span.m_duration, 1, 1, clipped.m_start, clipped.m_duration,
                                reversed ? "linear-reversed" : "linear", instanceID.c_str(), nullptr));
}

}  // namespace keltemporalxmp
