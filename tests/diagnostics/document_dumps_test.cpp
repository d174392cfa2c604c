// Golden output of the document dumps: flags and handles at their column,
// then the track list, the ingredient list and the pantry with their
// numbered entries.

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include <keltemporalxmp/docops.hpp>

namespace keltemporalxmp {
namespace {

// Addresses differ from run to run; their column and quotes do not.
std::string DumpWithoutAddresses(const XMPDocOpsTemporal& document) {
    testing::internal::CaptureStdout();
    document.debug_Dump();
    return std::regex_replace(testing::internal::GetCapturedStdout(), std::regex("'0x[^']*'"), "'ADDRESS'");
}

const char* const kFlagsOfNewDocument =
    "[DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_Dump()] Entering\n"
    "  m_hasTrackDataChanged=      'false'\n"
    "  m_hasIngredientDataChanged= 'false'\n"
    "  m_hasPantryDataChanged=     'false'\n"
    "  m_cachedTrackData=          'false'\n"
    "  m_cachedIngredientData=     'false'\n"
    "  m_cachedPantryData=         'false'\n"
    "  m_xmpDocOpsPtr=             'ADDRESS'\n"
    "  m_xmpMetaPtr=               'ADDRESS'\n";

TEST(DocumentDumps, UnreadDocumentPrintsItsFlagsAndOnlyTheListFrames) {
    const XMPDocOpsTemporal document;
    EXPECT_EQ(DumpWithoutAddresses(document),
              std::string(kFlagsOfNewDocument) +
                  "  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpTrackList()] Entering\n"
                  "  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpTrackList()] Exiting\n\n"
                  "  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpIngredientList()] Entering\n"
                  "  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpIngredientList()] Exiting\n\n"
                  "  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpPantryList()] Entering\n"
                  "  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpPantryList()] Exiting\n\n"
                  "[DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_Dump()] Exiting\n\n");
}

TEST(DocumentDumps, TracksAreNumberedByNameAndDumpedInside) {
    SXMPMeta meta;
    XMPDocOpsTemporal document;
    document.OpenXMP(&meta, "");
    document.AddTrack("Cuts", XMPTrack("", "Chapter", 25, 1));
    document.AddTrack("Notes", XMPTrack(1, 1));
    const std::string output = DumpWithoutAddresses(document);

    EXPECT_NE(output.find("  m_hasTrackDataChanged=      'true'\n"), std::string::npos);
    EXPECT_NE(output.find("  m_cachedTrackData=          'true'\n"), std::string::npos);
    EXPECT_NE(output.find("  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpTrackList()] Entering\n"
                          "    Track[1] TrackName = 'Cuts'\n"
                          "      [DEBUG keltemporalxmp::XMPTrack::debug_Dump()] Entering\n"
                          "        m_TrackName=                         'Cuts'\n"
                          "        m_TrackType=                         'Chapter'\n"),
              std::string::npos)
        << output;
    EXPECT_NE(output.find("      [DEBUG keltemporalxmp::XMPTrack::debug_Dump()] Exiting\n\n"
                          "    Track[2] TrackName = 'Notes'\n"),
              std::string::npos)
        << output;
    EXPECT_NE(output.find("      [DEBUG keltemporalxmp::XMPTrack::debug_Dump()] Exiting\n\n"
                          "  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpTrackList()] Exiting\n\n"
                          "  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpIngredientList()] Entering\n"),
              std::string::npos)
        << output;
}

TEST(DocumentDumps, IngredientsAndPantryEntriesAreNumberedByKey) {
    SXMPMeta source;
    source.SetProperty(kXMP_NS_XMP_MM, "InstanceID", "xmp.iid:source");
    SXMPMeta meta;
    XMPDocOpsTemporal document;
    document.OpenXMP(&meta, "");
    document.AddIngredientXMPTemporal(source, 0, 254016000000, 0, 254016000000, "", "", "linear");
    const std::string output = DumpWithoutAddresses(document);

    EXPECT_NE(output.find("  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpIngredientList()] Entering\n"
                          "    Ingredient[1] Key='xmp.iid:source"),
              std::string::npos)
        << output;
    EXPECT_NE(output.find("  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpPantryList()] Entering\n"
                          "    PantryEntry[1] Key='xmp.iid:source'\n"
                          "      [DEBUG keltemporalxmp::XMP_internalPantryEntry::debug_Dump()] Entering\n"
                          "        m_PantryEntryKey=     'xmp.iid:source'\n"
                          "        m_SourceXMPMeta=      'ADDRESS'\n"
                          "        m_SourcePantryIndex=  '0'\n"
                          "      [DEBUG keltemporalxmp::XMP_internalPantryEntry::debug_Dump()] Exiting\n\n"
                          "  [DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_DumpPantryList()] Exiting\n\n"
                          "[DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_Dump()] Exiting\n\n"),
              std::string::npos)
        << output;
}

// Each part is taken apart under the ingredient's fields, without alignment;
// a part without a duration has an unspecified one.
TEST(DocumentDumps, IngredientPrintsItsPartsTakenApart) {
    const XMP_internalIngredient ingredient("key-1", "xmp.iid:a", "xmp.did:b", "", "", "", "", "", "", "",
                                            "/video/time:25f25d50f25", "time:100", "linear-reversed", "", "",
                                            "clip.mov", "", "", "", "", "", "All");
    testing::internal::CaptureStdout();
    ingredient.debug_Dump();
    const std::string output = testing::internal::GetCapturedStdout();
    // The plain fields share one column; each part is followed by its pieces.
    EXPECT_EQ(output.substr(0, output.find("        m_versionID")),
              "      [DEBUG keltemporalxmp::XMP_internalIngredient::debug_Dump()] Entering\n"
              "        m_IngredientKey=         'key-1'\n"
              "        m_instanceID=            'xmp.iid:a'\n"
              "        m_documentID=            'xmp.did:b'\n");
    const std::string parts =
        "        m_fromPart=              '/video/time:25f25d50f25'\n"
        "                                    m_fromPart.path:'/video'\n"
        "                                    m_fromPart.startTime:'   254016000000'='   1.000000000000000 secs'\n"
        "                                    m_fromPart.startTimeNumerator:'25'\n"
        "                                    m_fromPart.startTimeDenominator:'1'\n"
        "                                    m_fromPart.duration:'   508032000000'='   2.000000000000000 secs'\n"
        "                                    m_fromPart.durationNumerator:'25'\n"
        "                                    m_fromPart.durationDenominator:'1'\n"
        "        m_toPart=                'time:100'\n"
        "                                    m_toPart.path:''\n"
        "                                    m_toPart.startTime:' 25401600000000'=' 100.000000000000000 secs'\n"
        "                                    m_toPart.startTimeNumerator:'1'\n"
        "                                    m_toPart.startTimeDenominator:'1'\n"
        "                                    m_toPart.duration:"
        "'9223372036854775807'='36310201.077313147485256 secs'='TIME_UNSPECIFIED'\n"
        "                                    m_toPart.durationNumerator:'1'\n"
        "                                    m_toPart.durationDenominator:'1'\n"
        "        m_partMapping=           'linear-reversed'\n";
    EXPECT_NE(output.find(parts), std::string::npos) << output;
    const std::string tail =
        "        m_maskMarkers=           'All'\n"
        "      [DEBUG keltemporalxmp::XMP_internalIngredient::debug_Dump()] Exiting\n\n";
    EXPECT_TRUE(output.ends_with(tail)) << output;
}

}  // namespace
}  // namespace keltemporalxmp
