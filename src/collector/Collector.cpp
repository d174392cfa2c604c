// The collection step: a document's report-back, its own markers, then its
// ingredients, each through the pantry.

#include <keltemporalxmp/collector.hpp>

#include <limits>
#include <utility>

#include "collector/Walk.hpp"
#include "collector/XmpDocumentSource.hpp"

namespace keltemporalxmp {

XMPTemporalMetadataCollector::XMPTemporalMetadataCollector(const SXMPMeta& xmp, std::int64_t rangeStart,
                                                           std::int64_t rangeDuration)
    : XMPTemporalMetadataCollector(kDefaultCollectionMask, xmp, rangeStart, rangeDuration) {}

XMPTemporalMetadataCollector::XMPTemporalMetadataCollector(unsigned char mask, const SXMPMeta& xmp,
                                                           std::int64_t rangeStart, std::int64_t rangeDuration)
    : XMPTemporalMetadataCollector(mask, xmp, rangeStart, rangeDuration, kDefaultMaxRecords) {}

XMPTemporalMetadataCollector::XMPTemporalMetadataCollector(unsigned char mask, const SXMPMeta& xmp,
                                                           std::int64_t rangeStart, std::int64_t rangeDuration,
                                                           std::size_t maxRecords) {
    collector::XmpDocumentSource source(xmp);
    collector::Walk(source, m_collection, maxRecords).Run(mask, rangeStart, rangeDuration);
}

XMPTemporalMetadataCollector::~XMPTemporalMetadataCollector() = default;

namespace collector {
namespace {

std::size_t Times(std::size_t count, std::size_t factor) {
    return count > std::numeric_limits<std::size_t>::max() / factor ? std::numeric_limits<std::size_t>::max()
                                                                    : count * factor;
}

std::size_t TextBytes(const XMPTemporalMetadataInfo& info) {
    std::size_t bytes = 0;
    for (int field = XMPTemporalMetadataInfo::kInfoField_Name; field <= XMPTemporalMetadataInfo::kInfoField_MarkerID;
         ++field) {
        bytes += info.GetMarkerFieldPtr(static_cast<XMPTemporalMetadataInfo::_infoFieldEnum>(field))->size();
    }
    for (const XMPCuePointParam& cuePoint : info.GetCuePointParamList()) {
        bytes += cuePoint.GetKeyPtr()->size() + cuePoint.GetValuePtr()->size();
    }
    return bytes;
}

[[noreturn]] void ThrowBound(const std::string& what, const std::string& instanceID) {
    const std::string message = "Collecting temporal metadata: " + what + ", at instance ID \"" + instanceID + "\"";
    throw XMP_Error(kXMPErr_BadXMP, message.c_str());
}

}  // namespace

using C = XMPTemporalMetadataCollector;

Walk::Walk(DocumentSource& source, Collection& collection, std::size_t maxRecords)
    : m_source(source),
      m_collection(collection),
      m_maxRecords(maxRecords),
      m_maxSteps(Times(maxRecords, kStepsPerRecord)),
      m_maxTextBytes(Times(maxRecords, kTextBytesPerRecord)) {}

void Walk::Run(unsigned char mask, std::int64_t rangeStart, std::int64_t rangeDuration) {
    Collect(m_source.Top(Content::kIngredients),
            Visit(Mapping{rangeStart, rangeStart, 1.0}, rangeDuration, mask, Span{rangeStart, rangeDuration}, 0, ""));
}

void Walk::Collect(const DocumentRecords& document, const Visit& visit) {
    const std::string& instanceID = document.m_instanceID;
    if (visit.m_depth > C::kMaxNestingDepth) {
        ThrowBound("ingredients nested more than " + std::to_string(C::kMaxNestingDepth) + " deep", instanceID);
    }
    Step(instanceID);
    if ((visit.m_mask & C::kNoRepeat) != 0) {
        const auto [key, added] =
            m_visited.insert(visit.m_chain.empty() ? instanceID + "/-noqualifier-" : visit.m_chain);
        if (!added) {
            return;
        }
        // Keys grow with the depth: kept for every visit, they count as text.
        AddText(key->size(), instanceID);
    }
    CollectComponent(visit, instanceID);
    if ((visit.m_mask & (visit.AtTop() ? C::kCollectDocumentMarkers : C::kCollectIngredientMarkers)) != 0) {
        // Read only now, so that a document whose tracks cannot be read fails
        // the walk only where its markers are due.
        const DocumentRecords& read = visit.AtTop() ? m_source.Top(Content::kTracksAndIngredients)
                                                    : *m_source.Find(instanceID, Content::kTracksAndIngredients);
        CollectMarkers(read.m_tracks, visit, instanceID);
    }
    // Nothing below can add a record without these.
    if ((visit.m_mask & (C::kCollectComponentMetadata | C::kCollectIngredientMarkers)) != 0) {
        CollectIngredients(document, visit);
    }
}

// The document's span on the top timeline, as far as its from-span reaches.
void Walk::CollectComponent(const Visit& visit, const std::string& instanceID) {
    if ((visit.m_mask & (visit.AtTop() ? C::kCollectBaseDocument : C::kCollectComponentMetadata)) == 0) {
        return;
    }
    const std::int64_t toStart = visit.m_mapping.m_toStart;
    Span span{toStart, SaturatingSubtract(visit.m_mappedFromEnd, toStart)};
    const bool reversed = !visit.AtTop() && visit.m_mapping.m_scale < 0.0;
    if (reversed && (visit.m_mask & C::kReversedComponentFromEnd) != 0) {
        span = span.Reversed();
    }
    const Span clipped = visit.Clipped(span.m_start, span.End());
    Insert(span.m_start,
           XMPTemporalMetadataInfo(visit.AtTop() ? "Base Document" : "ComponentMetadata", instanceID.c_str(),
                                   span.m_start, 1, 1, span.m_duration, 1, 1, clipped.m_start, clipped.m_duration,
                                   reversed ? "linear-reversed" : "linear", instanceID.c_str(), nullptr));
}

void Walk::Insert(std::int64_t key, XMPTemporalMetadataInfo&& info) {
    const std::string& instanceID =
        *info.GetMarkerFieldPtr(XMPTemporalMetadataInfo::kInfoField_ReportedContainingInstanceID);
    if (m_collection.size() >= m_maxRecords) {
        ThrowBound("more than " + std::to_string(m_maxRecords) + " records (the collection's record bound)",
                   instanceID);
    }
    AddText(TextBytes(info), instanceID);
    m_collection.emplace(key, std::move(info));
}

void Walk::AddText(std::size_t bytes, const std::string& instanceID) {
    m_textBytes += bytes;
    if (m_textBytes > m_maxTextBytes) {
        ThrowBound("more than " + std::to_string(m_maxTextBytes) + " bytes of text kept (" +
                       std::to_string(kTextBytesPerRecord) + " per record of the bound of " +
                       std::to_string(m_maxRecords) + " records)",
                   instanceID);
    }
}

void Walk::Step(const std::string& instanceID) {
    if (++m_steps > m_maxSteps) {
        ThrowBound("more than " + std::to_string(m_maxSteps) + " documents, markers and ingredient uses looked at (" +
                       std::to_string(kStepsPerRecord) + " per record of the bound of " + std::to_string(m_maxRecords) +
                       " records)",
                   instanceID);
    }
}

}  // namespace collector
}  // namespace keltemporalxmp
