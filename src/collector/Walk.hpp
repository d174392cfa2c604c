#pragma once
// The collection over a DocumentSource: a document's report-back, its own
// markers, then its ingredients, each through the pantry.

#include <keltemporalxmp/collector.hpp>

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "collector/DocumentSource.hpp"
#include "collector/Visit.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] collector {

using Collection = XMPTemporalMetadataCollector::Collection;

class Walk {
public:
    // A document entered, a marker or an ingredient item looked at: the work
    // allowed per record of the bound, so that uses which show little of a
    // large document cannot run on without records.
    static constexpr std::size_t kStepsPerRecord = 64;
    // Text is copied into every record that shows a marker, and the
    // no-repeat mode keeps a key for every visit, so long texts used often
    // are bounded too.
    static constexpr std::size_t kTextBytesPerRecord = 256;

    // Files into `collection`; more than maxRecords records, more steps than
    // kStepsPerRecord times that, or more text than kTextBytesPerRecord times
    // that kept, raise XMP_Error kXMPErr_BadXMP.
    Walk(DocumentSource& source, Collection& collection, std::size_t maxRecords);

    // The range of the top document's timeline; a negative duration counts
    // backwards from rangeStart. The top document is mapped onto itself.
    void Run(unsigned char mask, std::int64_t rangeStart, std::int64_t rangeDuration);

private:
    void Collect(const DocumentRecords& document, const Visit& visit);
    void CollectComponent(const Visit& visit, const std::string& instanceID);
    void CollectMarkers(const std::vector<XMPTrack>& tracks, const Visit& visit, const std::string& instanceID);
    void CollectIngredients(const DocumentRecords& document, const Visit& visit);
    // Makes the marker a report-back of where it was found and files it.
    void File(XMPTemporalMetadataInfo marker, const MarkerPlacement& placement);
    void Insert(std::int64_t key, XMPTemporalMetadataInfo&& info);
    void Step(const std::string& instanceID);
    void AddText(std::size_t bytes, const std::string& instanceID);

    DocumentSource& m_source;
    Collection& m_collection;
    std::size_t m_maxRecords;
    std::size_t m_maxSteps;
    std::size_t m_maxTextBytes;
    std::size_t m_steps = 0;
    std::size_t m_textBytes = 0;
    // Visit keys of the no-repeat mode.
    std::set<std::string> m_visited;
};

}  // namespace collector
}  // namespace keltemporalxmp
