#pragma once
// XMPTemporalMetadataCollector: every marker that a composed document shows in
// one range of its timeline, from its own tracks and from the tracks of its
// ingredients at any depth, mapped onto the document's timeline.

#include <cstddef>
#include <cstdint>
#include <map>

#include <keltemporalxmp/export.hpp>
#include <keltemporalxmp/records.hpp>
#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp {

// Collects at construction and only reads the XMP. Nested documents are found
// in the document's own xmpMM:Pantry by the instance IDs of the ingredients;
// an ingredient without a pantry item, or with a part string that cannot be
// read, contributes nothing.
//
// Each ingredient's from-part is mapped onto its to-part ("linear", or
// "linear-reversed", which runs the from-part backwards), scaled by the ratio
// of their durations. Times are ticks; 9223372036854775807 is an unspecified
// time (an unbounded range or span) and any arithmetic that meets it yields it
// again. A marker is kept when it overlaps the range and every enclosing
// ingredient's span (a zero-length marker counts as one tick long); its
// report-back keeps the mapped start and duration and, as the clipped ones,
// the part that lies inside.
//
// Nesting is bounded: a document more than kMaxNestingDepth ingredients below
// the top (as a pantry that reaches a document again makes it) raises
// XMP_Error kXMPErr_BadXMP naming the instance ID where the walk stopped, and
// the collector is not built. The no-repeat mode does not lift the bound.
//
// Each document is read once per collection however often it is used, so
// the work grows with the records collected. So that a small pantry whose
// documents each use several others cannot make exponentially many, one
// collection makes at most maxRecords records (kDefaultMaxRecords unless
// given), keeps no more than 256 bytes of text (in records, and the keys of
// the no-repeat mode) per record of that bound, and looks at no more than 64 documents, markers and ingredient uses per
// record of that bound; past any of these the same error names the bound.
//
// One thread at a time.
class KELTXMP_API XMPTemporalMetadataCollector {
public:
    enum _collectionMaskEnum : unsigned char {
        // A "Base Document" component-metadata record for the document itself.
        kCollectBaseDocument = 0x01,
        // A "ComponentMetadata" record for each ingredient visited.
        kCollectComponentMetadata = 0x02,
        // The markers of the document's own tracks.
        kCollectDocumentMarkers = 0x04,
        // The markers of the ingredients' tracks. An ingredient whose
        // stRef:maskMarkers is "All" is visited without this bit and 0x04.
        kCollectIngredientMarkers = 0x08,
        // Every ingredient's markers count: stRef:maskMarkers is not read.
        kIgnoreMaskMarkers = 0x10,
        // A reversed ingredient's record starts at the far end of its span and
        // has a negative duration.
        kReversedComponentFromEnd = 0x20,
        // A document reached again along the same chain of part mappings is
        // skipped.
        kNoRepeat = 0x40,
        kDefaultCollectionMask = 0x0F,
    };

    static constexpr int kMaxNestingDepth = 256;
    // About 600 MB of records of a few short texts each.
    static constexpr std::size_t kDefaultMaxRecords = 1000000;

    // Records by clipped start; equal starts keep the order they were found in.
    using Collection = std::multimap<std::int64_t, XMPTemporalMetadataInfo>;

    // The range [rangeStart, rangeStart + rangeDuration) of xmp's timeline; a
    // negative duration counts backwards from rangeStart.
    XMPTemporalMetadataCollector(const SXMPMeta& xmp, std::int64_t rangeStart, std::int64_t rangeDuration);
    XMPTemporalMetadataCollector(unsigned char mask, const SXMPMeta& xmp, std::int64_t rangeStart,
                                 std::int64_t rangeDuration);
    XMPTemporalMetadataCollector(unsigned char mask, const SXMPMeta& xmp, std::int64_t rangeStart,
                                 std::int64_t rangeDuration, std::size_t maxRecords);
    ~XMPTemporalMetadataCollector();

    Collection& GetXMPTemporalMetadataInfoCollection() { return m_collection; }
    const Collection& GetXMPTemporalMetadataInfoCollection() const { return m_collection; }

    void debug_Dump() const;

private:
    Collection m_collection;
};

}  // namespace keltemporalxmp
