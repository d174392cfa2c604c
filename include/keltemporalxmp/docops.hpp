#pragma once
// XMPDocOpsTemporal: the temporal operations on an XMP document, and the
// conversions between tick times and the text notations XMP stores them in.

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <keltemporalxmp/export.hpp>
#include <keltemporalxmp/records.hpp>
#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp {

// --- Ingredients and the pantry: records -------------------------------------

// One ingredient of a composed document: a span of a source document (the
// from-part) used at a place of this document (the to-part). Text only; the
// parts are part strings (ParsePart reads them).
class KELTXMP_API XMP_internalIngredient {
public:
    enum _ingredientFieldEnum : std::int32_t {
        kIngredientFieldKey = 1,  // never written to XMP
        kIngredientFieldInstanceID = 2,
        kIngredientFieldDocumentID = 3,
        kIngredientFieldVersionID = 4,
        kIngredientFieldRenditionClass = 5,
        kIngredientFieldRenditionParams = 6,
        kIngredientFieldManager = 7,
        kIngredientFieldManagerVariant = 8,
        kIngredientFieldManageTo = 9,
        kIngredientFieldManageUI = 10,
        kIngredientFieldFromPart = 11,
        kIngredientFieldToPart = 12,
        kIngredientFieldPartMapping = 13,  // "linear", "linear-reversed" or empty
        kIngredientFieldLinkForm = 14,
        kIngredientFieldLinkCategory = 15,
        kIngredientFieldFilePath = 16,
        kIngredientFieldAlternatePaths = 17,
        // Written as stRef:lastModifyDate, read back from stRef:fileModTime.
        kIngredientFieldLastModifyDate = 18,
        // Written into the item, read back from top-level xmpMM properties.
        kIngredientFieldPlacedXResolution = 19,
        kIngredientFieldPlacedYResolution = 20,
        kIngredientFieldPlacedResolutionUnit = 21,
        kIngredientFieldMaskMarkers = 22,  // "All" or "None"
    };

    XMP_internalIngredient() = default;
    // All 22 fields in field order, key first; null reads as empty.
    XMP_internalIngredient(const char* key, const char* instanceID, const char* documentID, const char* versionID,
                           const char* renditionClass, const char* renditionParams, const char* manager,
                           const char* managerVariant, const char* manageTo, const char* manageUI, const char* fromPart,
                           const char* toPart, const char* partMapping, const char* linkForm, const char* linkCategory,
                           const char* filePath, const char* alternatePaths, const char* lastModifyDate,
                           const char* placedXResolution, const char* placedYResolution,
                           const char* placedResolutionUnit, const char* maskMarkers);

    // A field outside 1..22 reads as the empty string (or null) and is not set.
    // A null value sets the empty string; a null output raises kXMPErr_BadParam.
    void GetIngredientField(std::string* value, _ingredientFieldEnum field) const;
    const std::string* GetIngredientFieldPtr(_ingredientFieldEnum field) const;
    void SetIngredientField(_ingredientFieldEnum field, const char* value);

    void debug_Dump() const;

private:
    KELTXMP_LOCAL static std::string XMP_internalIngredient::*FieldMember(_ingredientFieldEnum field);

    std::string m_IngredientKey;
    std::string m_instanceID;
    std::string m_documentID;
    std::string m_versionID;
    std::string m_renditionClass;
    std::string m_renditionParams;
    std::string m_manager;
    std::string m_managerVariant;
    std::string m_manageTo;
    std::string m_manageUI;
    std::string m_fromPart;
    std::string m_toPart;
    std::string m_partMapping;
    std::string m_linkForm;
    std::string m_linkCategory;
    std::string m_URI_filePath;
    std::string m_URI_alternatePaths;
    std::string m_URI_lastModifyDate;
    std::string m_placedXResolution;
    std::string m_placedYResolution;
    std::string m_placedResolutionUnit;
    std::string m_maskMarkers;
};

// One document of the pantry, under its instance ID. The metadata handle
// shares (does not copy) the document it names: the entry's document itself
// when the index is 0, otherwise a document in whose own xmpMM:Pantry the
// entry's document is item number m_SourcePantryIndex.
class KELTXMP_API XMP_internalPantryEntry {
public:
    XMP_internalPantryEntry(std::string key, const SXMPMeta& sourceXMPMeta, std::int32_t sourcePantryIndex)
        : m_PantryEntryKey(std::move(key)), m_SourceXMPMeta(sourceXMPMeta), m_SourcePantryIndex(sourcePantryIndex) {}

    void debug_Dump() const;

    std::string m_PantryEntryKey;
    SXMPMeta m_SourceXMPMeta;
    std::int32_t m_SourcePantryIndex;
};

// The document object: wraps the toolkit's document operations and keeps the
// document's track list in memory between opening and saving. The list is
// read from the XMP at its first use and written back only by PrepareForSave.
// One thread at a time.
class KELTXMP_API XMPDocOpsTemporal {
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
    void BranchXMP(XMPDocOpsTemporal* derived, SXMPMeta* derivedMeta, const char* mimeType, XMP_OptionBits options = 0);

    // Writes the changed lists into the XMP, then lets the toolkit prepare the
    // save (new instance ID, history). A changed list stays changed: every
    // later save writes it again. Without metadata, writing the tracks raises
    // kXMPErr_BadParam "Null output SXMPMeta pointer".
    void PrepareForSave(const char* mimeType, XMP_OptionBits options = 0);
    void PrepareForSave(const char* mimeType, const char* filePath, XMP_OptionBits options);
    void PrepareForSave(const char* mimeType, const char* filePath, XMP_DateTime& modDate, XMP_OptionBits options = 0);

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
    // TickTime::kTicksPerSecond (254016000000). Malformed numbers read as 0 and missing
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
                          std::int64_t* startTimeDenominator, std::int64_t* duration, std::int64_t* durationNumerator,
                          std::int64_t* durationDenominator, std::int64_t defaultDuration, std::string* path);

    // --- Ingredients ----------------------------------------------------------
    // Kept by key: the source's instance ID with the used span's start and
    // duration as a part string, so uses of one span of one source share a key
    // and the first one added (or read) stays. Adding and removing read the
    // ingredient list and the pantry first if they were never read, the
    // iterators the ingredient list. Times are ticks; null text reads as empty.
    using IngredientList = std::map<std::string, XMP_internalIngredient>;

    // Adds a use of ingredientXMP's span [fromStart, fromStart + fromDuration)
    // at [toStart, toStart + toDuration) of this document; a negative duration
    // is a reversed span and flips the mapping. A field left empty is taken
    // from ingredientXMP's own xmpMM property of the same name; an
    // ingredientXMP without an instance ID is given a new "xmp.iid:" one. The
    // ingredient's document, with its own pantry, joins this pantry, shared,
    // not copied: it is read when the pantry is written.
    //
    // flattenNested also adds each of ingredientXMP's own ingredients as an
    // ingredient of this document: the part of it that lies inside the used
    // span, mapped through this ingredient's parts (scaled by from-duration /
    // to-duration, mirrored when this ingredient is reversed) onto this
    // document's timeline. Its pantry entry comes along with ingredientXMP's
    // pantry; a nested ingredient outside the used span is not added. With
    // maskMarkers the flattened ingredients are masked too. A span without an
    // end cannot be mirrored and maps forwards.
    void AddIngredientXMPTemporal(const SXMPMeta& ingredientXMP, std::int64_t fromStart,
                                  std::int64_t fromStartNumerator, std::int64_t fromStartDenominator,
                                  std::int64_t fromDuration, std::int64_t fromDurationNumerator,
                                  std::int64_t fromDurationDenominator, std::int64_t toStart,
                                  std::int64_t toStartNumerator, std::int64_t toStartDenominator,
                                  std::int64_t toDuration, std::int64_t toDurationNumerator,
                                  std::int64_t toDurationDenominator, const char* filePath, const char* lastModifyDate,
                                  const char* partMapping, bool maskMarkers, bool flattenNested);
    void AddIngredientXMPTemporal(const SXMPMeta& ingredientXMP, std::int64_t fromStart,
                                  std::int64_t fromStartNumerator, std::int64_t fromStartDenominator,
                                  std::int64_t fromDuration, std::int64_t fromDurationNumerator,
                                  std::int64_t fromDurationDenominator, std::int64_t toStart,
                                  std::int64_t toStartNumerator, std::int64_t toStartDenominator,
                                  std::int64_t toDuration, std::int64_t toDurationNumerator,
                                  std::int64_t toDurationDenominator, const char* filePath, const char* lastModifyDate,
                                  const char* partMapping, bool maskMarkers);
    // Every rate 1/1.
    void AddIngredientXMPTemporal(const SXMPMeta& ingredientXMP, std::int64_t fromStart, std::int64_t fromDuration,
                                  std::int64_t toStart, std::int64_t toDuration, const char* filePath,
                                  const char* lastModifyDate, const char* partMapping);
    // Ready part strings, taken as they are (no reversal). A part string whose
    // rate cannot convert its time raises kXMPErr_BadValue.
    void AddIngredientXMP(const SXMPMeta& ingredientXMP, const char* fromPart, const char* toPart, const char* linkForm,
                          const char* linkCategory, const char* filePath, const char* alternatePaths,
                          const char* lastModifyDate, const char* placedXResolution, const char* placedYResolution,
                          const char* placedResolutionUnit);

    // The index'th ingredient in key order, from 1; any other index removes
    // nothing. The source's pantry entry goes with its last use.
    void RemoveIngredient(int index);
    // position must be a valid iterator of this list; the end removes nothing.
    void RemoveIngredient(IngredientList::iterator position);
    // Empties the ingredient list and the pantry.
    void ClearIngredients();
    // In key order, also the order of writing. After editing records through
    // them call IngredientListChanged().
    IngredientList::iterator IngredientListIteratorBegin();
    IngredientList::iterator IngredientListIteratorEnd();

    // --- Pantry ---------------------------------------------------------------
    // xmpMM:Pantry holds one struct item per source document (and, flattened,
    // per document those use), carrying the document's top-level properties as
    // its fields, identified by its xmpMM:InstanceID. Reading a pantry that has
    // items leaves it marked changed: the next save writes it again.
    using PantryList = std::map<std::string, XMP_internalPantryEntry>;

    // *out becomes the document stored at itemPath in doc (an item path such
    // as "xmpMM:Pantry[2]"), every property with its qualifiers; an empty
    // itemPath gives a copy of doc. A null out raises kXMPErr_BadParam.
    static void ExtractXMPMetaFromPantry(SXMPMeta* out, const SXMPMeta& doc, const char* itemPath);
    // An empty *path when instanceID is doc's own, else the path of the first
    // pantry item with that instance ID. An empty instanceID is never found.
    static bool LookupXMPPantryPathGivenInstanceId(const SXMPMeta& doc, const char* instanceID, std::string* path);
    // Runs the toolkit's template application (kXMPTemplate_... actions) on
    // every pantry document in the XMP; pending pantry edits are written first.
    // This and StripXMPExceptInstanceID raise kXMPErr_BadParam "Null output
    // SXMPMeta pointer" on a document without metadata.
    void ApplyTemplateToPantry(const SXMPMeta& templateXMP, unsigned int actions);
    // Saves pending edits (no file path), then leaves the XMP with nothing but
    // its xmpMM:InstanceID (nothing at all when it had none), and every list
    // empty.
    void StripXMPExceptInstanceID();

    // --- Diagnostics --------------------------------------------------------
    // Print the document state to standard output. They read nothing: a list
    // that was never read prints empty.

    void debug_Dump() const;
    void debug_DumpTrackList() const;
    void debug_DumpIngredientList() const;
    void debug_DumpPantryList() const;

private:
    // Reads the track list from the metadata, once.
    KELTXMP_LOCAL void CacheTrackList();
    // PrepareForSave's first part: every changed list, in a fixed order.
    KELTXMP_LOCAL void WriteChangedLists();
    KELTXMP_LOCAL void WriteTrackList();
    // The ingredient list and the pantry are written after the tracks, in this
    // order; each writer lives beside its list.
    KELTXMP_LOCAL void WriteIngredientList();
    KELTXMP_LOCAL void WritePantry();

    bool m_hasTrackDataChanged = false;
    bool m_hasIngredientDataChanged = false;
    bool m_hasPantryDataChanged = false;
    bool m_cachedTrackData = false;
    bool m_cachedIngredientData = false;
    bool m_cachedPantryData = false;
    TrackList m_tracks;
    std::unique_ptr<SXMPDocOps> m_xmpDocOpsPtr;
    std::unique_ptr<SXMPMeta> m_xmpMetaPtr;

    // --- Ingredients and the pantry -------------------------------------------
    KELTXMP_LOCAL void CacheIngredientList();
    KELTXMP_LOCAL void CachePantry();
    KELTXMP_LOCAL void CacheIngredientsAndPantry();
    // What every add comes down to: fields 2..21 of `ingredient` as the caller
    // gave them; the rest is filled in from the ingredient's document.
    KELTXMP_LOCAL void AddIngredient(const SXMPMeta& ingredientXMP, XMP_internalIngredient ingredient, bool maskMarkers,
                                     bool flattenNested);
    KELTXMP_LOCAL void AddNestedIngredients(const SXMPMeta& ingredientXMP, const XMP_internalIngredient& ingredient);
    // The document and the documents of its own pantry; an instance ID that
    // is there already keeps its entry.
    KELTXMP_LOCAL void AddToPantry(const SXMPMeta& document);
    KELTXMP_LOCAL void ErasePantry();
    KELTXMP_LOCAL SXMPMeta& MetaToWrite() const;

    IngredientList m_ingredients;
    PantryList m_pantry;
    // Instance IDs of the documents whose own pantries are merged into this
    // one already; emptied whenever an entry may have gone.
    std::set<std::string> m_mergedPantrySources;
};

}  // namespace keltemporalxmp
