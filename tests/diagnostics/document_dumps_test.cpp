// Golden output of the document dumps: flags and handles at their column,
// then the track list with its numbered tracks.

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
                          "[DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_Dump()] Exiting\n\n"),
              std::string::npos)
        << output;
}

}  // namespace
}  // namespace keltemporalxmp
