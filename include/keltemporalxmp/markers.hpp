#pragma once
// The UTF-16 marker object API: Marker, its custom cue point parameters,
// MarkerTypeFilter, a shared, thread-safe set of marker types that pass, the
// whole-list read and write of markers, and the segmentation query.

#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <kelcore/Allocator.hpp>
#include <kelcore/Guid.hpp>
#include <kelcore/RefCounted.hpp>
#include <kelcore/Strings.hpp>
#include <kelmediatypes/TickTime.hpp>
#include <keltemporalxmp/export.hpp>
#include <keltemporalxmp/records.hpp>
#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp {

using kelcore::UTF16String;

struct CustomMarkerParam {
    UTF16String key;
    UTF16String value;
};

using CustomMarkerParamList = std::vector<CustomMarkerParam, kelcore::STLAllocator<CustomMarkerParam>>;

class KELTXMP_API Marker {
public:
    // A fresh GUID; the marker ID is its text.
    Marker();
    // A GUID text is parsed, any other text hashed to a stable GUID; either way
    // the text itself stays the marker ID. An empty id acts as Marker().
    explicit Marker(const std::string& id);
    // Copies everything but the extension, which stays null. With newIdentity
    // the copy gets a fresh GUID and marker ID.
    Marker(const Marker& other, bool newIdentity);
    // Copy and assignment take everything, identity included; the extension is shared.
    Marker(const Marker&) = default;
    Marker& operator=(const Marker&) = default;
    ~Marker() = default;

    // Never compares the extension. While the debug setting
    // "BE.Marker.EnableRemoveRedundantTags" is "true", cue point type and list
    // are left out too, so markers differing only in cue point data are equal.
    bool operator==(const Marker& other) const;
    bool operator!=(const Marker& other) const { return !(*this == other); }

    kelcore::Guid GetGUID() const { return m_guid; }
    // Also makes the marker ID the GUID's text.
    void SetGuid(const kelcore::Guid& guid);
    std::string GetMarkerID() const { return m_markerID; }

    kelmediatypes::TickTime GetStartTime() const { return m_startTime; }
    void SetStartTime(const kelmediatypes::TickTime& startTime) { m_startTime = startTime; }
    kelmediatypes::TickTime GetDuration() const { return m_duration; }
    void SetDuration(const kelmediatypes::TickTime& duration) { m_duration = duration; }

    UTF16String GetType() const { return m_type; }
    void SetType(const UTF16String& type) { m_type = type; }
    UTF16String GetName() const { return m_name; }
    void SetName(const UTF16String& name) { m_name = name; }
    UTF16String GetComment() const { return m_comment; }
    void SetComment(const UTF16String& comment) { m_comment = comment; }
    UTF16String GetLocation() const { return m_location; }
    void SetLocation(const UTF16String& location) { m_location = location; }
    UTF16String GetTarget() const { return m_target; }
    void SetTarget(const UTF16String& target) { m_target = target; }
    UTF16String GetCuePointType() const { return m_cuePointType; }
    void SetCuePointType(const UTF16String& cuePointType) { m_cuePointType = cuePointType; }
    const CustomMarkerParamList& GetCuePointList() const { return m_cuePointList; }
    void SetCuePointList(const CustomMarkerParamList& cuePointList) { m_cuePointList = cuePointList; }
    UTF16String GetSpeaker() const { return m_speaker; }
    void SetSpeaker(const UTF16String& speaker) { m_speaker = speaker; }
    UTF16String GetProbability() const { return m_probability; }
    void SetProbability(const UTF16String& probability) { m_probability = probability; }

    // Opaque data of whoever made the marker; copies share it.
    std::shared_ptr<void> GetExtension() const { return m_extension; }

protected:
    // For code built on Marker that carries data of its own with it.
    void AttachExtension(std::shared_ptr<void> extension) { m_extension = std::move(extension); }

private:
    KELTXMP_LOCAL void TakeFreshIdentity();

    kelcore::Guid m_guid;
    std::string m_markerID;
    kelmediatypes::TickTime m_startTime;
    kelmediatypes::TickTime m_duration;
    UTF16String m_type;
    UTF16String m_name;
    UTF16String m_comment;
    UTF16String m_location;
    UTF16String m_target;
    UTF16String m_cuePointType;
    CustomMarkerParamList m_cuePointList;
    UTF16String m_speaker;
    UTF16String m_probability;
    std::shared_ptr<void> m_extension;
};

// Ordered by plain comparison of UTF-16 units: no case folding, no normalisation.
using MarkerTypeSet = std::set<UTF16String, std::less<UTF16String>, kelcore::STLAllocator<UTF16String>>;

// Decides which marker types pass. In exclusive mode (the initial one) the set
// lists the types to reject; otherwise it lists the only types to accept.
// Every operation holds the filter's lock for its whole duration, so one
// filter may be shared between threads. Create it with new (it starts with
// one reference) or kelcore::MakeRefCounted.
class KELTXMP_API MarkerTypeFilter : public kelcore::RefCountedImplementation,
                                     public kelcore::RefCountedInterface,
                                     public kelcore::Allocated<MarkerTypeFilter> {
public:
    MarkerTypeFilter() = default;
    ~MarkerTypeFilter() override = default;

    void AddRefCount() const override { RetainObject(); }
    void ReleaseRefCount() const override { ReleaseObject(); }

    void AddMarkerType(const UTF16String& type);
    // Invalid UTF-8 becomes U+FFFD.
    void AddMarkerType(const kelcore::UTF8String& type);
    void AddMarkerTypes(const MarkerTypeSet& types);
    void RemoveMarkerType(const UTF16String& type);
    void RemoveMarkerTypes(const MarkerTypeSet& types);
    // Leaves the mode as it is.
    void RemoveAllMarkerTypes();
    MarkerTypeSet GetFilterList() const;

    bool GetExclusiveMode() const;
    void SetExclusiveMode(bool exclusiveMode);

    bool Validate(const UTF16String& type) const;

private:
    MarkerTypeSet m_filterList;
    bool m_exclusiveMode = true;
    // Not recursive: no operation calls another public one.
    mutable std::mutex m_mutex;
};

using MarkerList = std::vector<std::shared_ptr<Marker>, kelcore::STLAllocator<std::shared_ptr<Marker>>>;

// Appends one marker per marker of every track of meta, track by track, each
// track's in ascending start time. A marker without a type of its own takes
// its track's type; keywords come back as cue points. Entries already in
// `markers` stay.
KELTXMP_API void ReadAllMarkers(TXMPMeta<std::string>& meta, MarkerList& markers);

// The same from tracks already read (XMPDocOpsTemporal's, or StreamReadTracks').
KELTXMP_API void AppendMarkersOfTracks(std::span<const XMPTrack> tracks, MarkerList& markers);

// What KELTemporalXMPGetSegmentationMarkers gives, from tracks already read.
KELTXMP_API void GetSegmentationMarkersOfTracks(std::span<const XMPTrack> tracks,
                                                std::vector<std::pair<std::int64_t, std::int64_t>>& segments,
                                                std::int64_t& frameDuration);

// Replaces every track of meta by one track per marker type, in ascending
// type order, named and typed by the type's UTF-8 text and running at the
// given frame rate; markers of a track are in ascending start time, ties in
// input order. The metadata is then prepared for saving, with the change noted
// on the Dynamic Media part of the metadata. An empty list removes all tracks.
KELTXMP_API void WriteAllMarkers(const MarkerList& markers, TXMPMeta<std::string>& meta,
                                 std::int64_t frameRateNumerator, std::int64_t frameRateDenominator);

}  // namespace keltemporalxmp

// Appends (start, duration) in ticks of every "Segmentation" marker of the
// track named "Markers" to *segments, in ascending start time, and sets
// *frameDuration to the ticks of one frame of that track: the largest int64_t
// when there is no such track (or a null meta) or the frame is shorter than a
// tick. Reads only. A zero frame-rate numerator raises XMP_Error
// kXMPErr_BadValue naming the rate; null outputs raise kXMPErr_BadParam.
extern "C" KELTXMP_API void KELTemporalXMPGetSegmentationMarkers(
    const TXMPMeta<std::string>* meta, std::vector<std::pair<std::int64_t, std::int64_t>>* segments,
    std::int64_t* frameDuration);
