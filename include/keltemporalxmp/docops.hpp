#pragma once
// XMPDocOpsTemporal: the temporal operations on an XMP document, and the
// conversions between tick times and the text notations XMP stores them in.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <keltemporalxmp/records.hpp>
#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp {

// The document object: wraps the toolkit's document operations and keeps the
// document's track list in memory between opening and saving. The list is
// read from the XMP at its first use and written back only by PrepareForSave.
// One thread at a time.
class XMPDocOpsTemporal {
public:
    using TrackList = std::vector<XMPTrack>;

    XMPDocOpsTemporal();
    ~XMPDocOpsTemporal();
    XMPDocOpsTemporal(const XMPDocOpsTemporal&) = delete;
    XMPDocOpsTemporal& operator=(const XMPDocOpsTemporal&) = delete;

    // --- Document lifecycle -------------------------------------------------
    // The document keeps a second handle on the caller's metadata (the two
    // share one tree); a null meta leaves it without metadata.

    // Replaces any earlier handle.
    void NewXMP(SXMPMeta* meta, const char* mimeType, XMP_OptionBits options = 0);
    // Keeps an earlier handle. The toolkit takes no options when opening.
    void OpenXMP(SXMPMeta* meta, const char* mimeType, XMP_OptionBits options = 0);
    void OpenXMP(SXMPMeta* meta, const char* mimeType, const char* filePath, XMP_OptionBits options);
    void OpenXMP(SXMPMeta* meta, const char* mimeType, const char* filePath, XMP_DateTime& modDate,
                 XMP_OptionBits options = 0);
    // Saves pending list edits of this document first; `derived` then works on
    // derivedMeta. A null `derived` raises kXMPErr_BadParam.
    void BranchXMP(XMPDocOpsTemporal* derived, SXMPMeta* derivedMeta, const char* mimeType,
                   XMP_OptionBits options = 0);

    // Writes the changed lists into the XMP, then lets the toolkit prepare the
    // save (new instance ID, history). A changed list stays changed: every
    // later save writes it again. Without metadata, writing the tracks raises
    // kXMPErr_BadParam "Null output SXMPMeta pointer".
    void PrepareForSave(const char* mimeType, XMP_OptionBits options = 0);
    void PrepareForSave(const char* mimeType, const char* filePath, XMP_OptionBits options);
    void PrepareForSave(const char* mimeType, const char* filePath, XMP_DateTime& modDate,
                        XMP_OptionBits options = 0);

    // The toolkit's answer, or a list changed.
    bool IsDirty() const;

    // --- Toolkit change tracking and IDs ------------------------------------
    // Part names are paths starting with "/" ("/", "/metadata", ...).

    void NoteChange(const char* part);
    void NoteChange(const std::vector<const char*>& parts);
    bool HasPartChanged(const char* prefixInstanceID, const char* part) const;
    bool HasPartChanged(const char* prefixInstanceID, const std::vector<const char*>& parts) const;
    bool GetPartChangeID(const char* part, std::string* changeInstanceID) const;
    bool GetPartChangeID(const std::vector<const char*>& parts, std::string* changeInstanceID) const;
    void EnsureIDsExist(XMP_OptionBits options = 0);
    // prefix followed by the text of a fresh GUID.
    static void CreateID(std::string* id, const char* prefix);
    void SetAppName(const char* appName);

    // --- Track list ---------------------------------------------------------
    // Every operation reads the list first if it was never read. Pointers and
    // iterators stay valid until the list next changes. Tracks are looked up
    // by type, not by name.

    // Appends a copy of the track, named trackName.
    void AddTrack(const char* trackName, const XMPTrack& track);
    // The track at that very address; false for null or a foreign pointer.
    bool DeleteTrack(const XMPTrack* track);
    // The first track of that type.
    bool DeleteTrack(const std::string* trackType);
    void DeleteAllTracks();
    // The first track of that type, or null.
    XMPTrack* GetTrack(const std::string* trackType);
    TrackList::iterator TrackListIteratorBegin();
    TrackList::iterator TrackListIteratorEnd();

    // After editing tracks in place through the iterators or GetTrack.
    void TrackListChanged();
    void IngredientListChanged() { m_hasIngredientDataChanged = true; }
    void PantryListChanged() { m_hasPantryDataChanged = true; }

    // --- Time strings -------------------------------------------------------
    // Stateless. Times are signed tick counts; the library always passes
    // 254016000000 ticks per second. Malformed numbers read as 0 and missing
    // pieces fall back to defaults, but a rate that would be divided by is
    // checked: a zero numerator (and, when writing, a zero denominator) or a
    // tick rate below 1 raises XMP_Error kXMPErr_BadValue naming the rate.
    // Null text reads as empty; a null output raises kXMPErr_BadParam.

    static double ConvertTicksToSeconds(std::int64_t ticks);

    // The rate pointed to is the default for text without a rate; a rate in
    // the text is written back to it.
    static std::int64_t ConvertExternalTimeStringToTicks(const char* timeString, std::int64_t* frameRateNumerator,
                                                         std::int64_t* frameRateDenominator,
                                                         std::int64_t ticksPerSecond);
    // A rate in the text is used but not returned.
    static std::int64_t ConvertExternalTimeStringToTicks(const char* timeString, std::int64_t frameRateNumerator,
                                                         std::int64_t frameRateDenominator,
                                                         std::int64_t ticksPerSecond);
    static void ConvertTicksToExternalTimeString(std::string* timeString, std::int64_t ticks,
                                                 std::int64_t frameRateNumerator, std::int64_t frameRateDenominator,
                                                 std::int64_t ticksPerSecond, bool appendFrameRate);

    static void CreateExternalFrameRateString(std::string* frameRateString, std::int64_t frameRateNumerator,
                                              std::int64_t frameRateDenominator);
    // Always writes both outputs.
    static void ParseExternalFrameRateString(const char* frameRateString, std::int64_t* frameRateNumerator,
                                             std::int64_t* frameRateDenominator);

    static void CreatePartString(std::string* partString, std::int64_t startTime, std::int64_t startTimeNumerator,
                                 std::int64_t startTimeDenominator, std::int64_t duration,
                                 std::int64_t durationNumerator, std::int64_t durationDenominator,
                                 std::int64_t noDuration, const char* path);
    // The rate outputs are in/out like the in/out time-string conversion.
    static void ParsePart(const char* partString, std::int64_t* startTime, std::int64_t* startTimeNumerator,
                          std::int64_t* startTimeDenominator, std::int64_t* duration,
                          std::int64_t* durationNumerator, std::int64_t* durationDenominator,
                          std::int64_t defaultDuration, std::string* path);

    // --- Diagnostics --------------------------------------------------------
    // Print the document state to standard output. They read nothing: a list
    // that was never read prints empty.

    void debug_Dump() const;
    void debug_DumpTrackList() const;

private:
    // Reads the track list from the metadata, once.
    void CacheTrackList();
    // PrepareForSave's first part: every changed list, in a fixed order.
    void WriteChangedLists();
    void WriteTrackList();
    // The ingredient list and the pantry are written after the tracks, in this
    // order; each writer lives beside its list.
    void WriteIngredientList();
    void WritePantry();

    bool m_hasTrackDataChanged = false;
    bool m_hasIngredientDataChanged = false;
    bool m_hasPantryDataChanged = false;
    bool m_cachedTrackData = false;
    bool m_cachedIngredientData = false;
    bool m_cachedPantryData = false;
    TrackList m_tracks;
    std::unique_ptr<SXMPDocOps> m_xmpDocOpsPtr;
    std::unique_ptr<SXMPMeta> m_xmpMetaPtr;
};

}  // namespace keltemporalxmp
