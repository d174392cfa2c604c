// Malformed text is refused with the line and column where it goes wrong.

#include <gtest/gtest.h>

#include <keltemporalxmp/exchange.hpp>

namespace keltemporalxmp::exchange {
namespace {

struct MalformedCase {
    Format format;
    const char* text;
    std::size_t line;
    std::size_t column;
    const char* expected;  // part of the message
};

const MalformedCase kMalformed[] = {
    {Format::kYouTube, "Chapters:\n0:00 Intro\n1:7 Broken\n", 3, 1, "M:SS"},
    {Format::kYouTube, "0:00 Intro\n  0:75 Broken\n", 2, 3, "M:SS"},
    {Format::kYouTube, "0:00\n", 1, 5, "a space"},
    {Format::kFFMetadata, "[CHAPTER]\n", 1, 1, ";FFMETADATA1"},
    {Format::kFFMetadata, ";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/x\n", 3, 10, "timebase"},
    {Format::kFFMetadata, ";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/0\n", 3, 10, "timebase"},
    {Format::kFFMetadata, ";FFMETADATA1\n[CHAPTER]\nSTART=5\nEND=4\n", 4, 5, "END not before START"},
    {Format::kFFMetadata, ";FFMETADATA1\n[CHAPTER]\nSTART=99999999999999999999\n", 3, 7, "whole number"},
    {Format::kFFMetadata, ";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1000000000000/1\nSTART=999999999999\n", 4, 7, "fits"},
    {Format::kFFMetadata, ";FFMETADATA1\n[CHAPTER]\nSTART=0\ntitle=a\n[CHAPTER]\n", 2, 1, "START and END"},
    {Format::kFFMetadata, ";FFMETADATA1\nno equals sign\n", 2, 15, "key=value"},
    {Format::kWebVTT, "WEBVT\n", 1, 1, "WEBVTT"},
    {Format::kWebVTT, "WEBVTT\n\n00:00:01.000 -> 00:00:02.000\nx\n", 4, 1, "cue time"},
    {Format::kWebVTT, "WEBVTT\n\n00:00:01.000 x --> 00:00:02.000\nx\n", 3, 14, "-->"},
    {Format::kWebVTT, "WEBVTT\n\n00:00:01.000 --> 00:00:02.00\nx\n", 3, 18, "cue time"},
    {Format::kWebVTT, "WEBVTT\n\n00:00:03.000 --> 00:00:02.000\nx\n", 3, 18, "not before the start"},
    {Format::kWebVTT, "WEBVTT\n\n7043127:02.500 --> 88888180:02.500\nx\n", 3, 1, "fits 64-bit ticks"},
    {Format::kWebVTT, "WEBVTT\n\nan identifier\n\n", 4, 1, "timing"},
    {Format::kSRT, "1\n00:00:01:000 --> 00:00:02,000\nx\n", 2, 1, "cue time"},
    {Format::kSRT, "1\n00:00:01,000 --> 00:00:02,000x\nx\n", 2, 30, "end of the timing line"},
    {Format::kSRT, "1\n00:00:01,000 --> 999999999:00:00,000\nx\n", 2, 18, "fits 64-bit ticks"},
    {Format::kEDL, "TITLE: t\n001  001 V C 00:00:00:00 00:00:00:01 00:00:00:00\n", 2, 49, "four timecodes"},
    {Format::kEDL, "001  001 V C 00:00:00:00 00:00:00:01 00:00:00:99 00:00:01:00\n", 1, 38, "timecode"},
    {Format::kEDL, " |C:ResolveColorBlue |M:lonely |D:1\n", 1, 1, "after an event"},
    {Format::kEDL, "001  001 V C 00:00:00:00 00:00:00:01 00:00:00:00 00:00:00:01\n |M:x |D:y\n", 2, 10, "frame count"},
    {Format::kEDL, "* LOC: 00:00:0x:00 RED name\n", 1, 8, "timecode"},
    {Format::kCSV, "Marker Name,In\r\nx,\"00:00:00:00\r\n", 2, 3, "closing quote"},
    {Format::kCSV, "Marker Name,In\r\nx,\"00:00:00:00\"z\r\n", 2, 16, "separator"},
    {Format::kCSV, "Marker Name,In\r\nx\"y,00:00:00:00\r\n", 2, 2, "quote only around"},
    {Format::kCSV, "Marker Name,Out\r\nx,00:00:00:00\r\n", 1, 1, "\"In\" column"},
    {Format::kCSV, "Marker Name,In\r\n\"two\r\nlines\",00:00:0:00\r\n", 3, 8, "timecode"},
    {Format::kCSV, "Marker Name,In\r\nx,\r\n", 2, 1, "In time"},
    {Format::kTSV, "Marker Name\tIn\tOut\r\nx\t00:00:02:00\t00:00:01:00\r\n", 2, 1, "Out time not before In"},
    {Format::kAudacity, "1.5\t2.5\tok\n1,5\t2\tbad\n", 2, 2, "a tab"},
    {Format::kAudacity, "x\t2\tbad\n", 1, 1, "seconds"},
    {Format::kAudacity, "3\t2\tbackwards\n", 1, 3, "not before the start"},
    {Format::kAudacity, "1.1234567890123\t2\tx\n", 1, 3, "12 decimals"},
    {Format::kAudacity, "999999999999\t999999999999\tx\n", 1, 1, "fits"},
    {Format::kOTIO, "{\"OTIO_SCHEMA\": \"Timeline.1\",\n \"tracks\": [}\n", 2, 13, "well-formed JSON"},
    {Format::kOTIO, "{\"OTIO_SCHEMA\": \"Clip.1\"}", 0, 0, "Timeline.1"},
    {Format::kOTIO, "{\"OTIO_SCHEMA\": \"Timeline.1\", \"tracks\": {\"OTIO_SCHEMA\": \"Stack.1\", \"markers\": [{}]}}",
     0, 0, "\"Marker.2\" at tracks.markers[0]"},
    {Format::kOTIO,
     "{\"OTIO_SCHEMA\": \"Timeline.1\", \"tracks\": {\"OTIO_SCHEMA\": \"Stack.1\", \"markers\": [{\"OTIO_SCHEMA\": "
     "\"Marker.2\", \"marked_range\": {\"OTIO_SCHEMA\": \"TimeRange.1\", \"start_time\": {\"OTIO_SCHEMA\": "
     "\"RationalTime.1\", \"rate\": 0, \"value\": 1}}}]}}",
     0, 0, "at tracks.markers[0].marked_range.start_time"},
    {Format::kJSON, "[{\"name\": 5}]", 0, 0, "text at markers[0].name"},
    {Format::kJSON, "{\"markers\": [{\"start\": \"soon\"}]}", 0, 0, "at markers[0].start"},
    {Format::kJSON, "{\"files\": []}", 0, 0, "exactly one file"},
    {Format::kJSON, "{\"files\": [{\"files\": [{\"markers\": []}]}]}", 0, 0, "at the top"},
    {Format::kJSON, "[{\"start\": 1e999}]", 0, 0, "range of a double"},
    {Format::kJSON, "\n\n  {\"markers\": [1,]}", 3, 18, "well-formed JSON"},
};

class MalformedImport : public ::testing::TestWithParam<MalformedCase> {};

TEST_P(MalformedImport, NamesWhereAndWhat) {
    const MalformedCase& malformed = GetParam();
    try {
        ImportMarkers(malformed.text, malformed.format);
        FAIL() << "accepted";
    } catch (const ImportError& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadValue);
        EXPECT_EQ(error.Line(), malformed.line) << error.GetErrMsg();
        EXPECT_EQ(error.Column(), malformed.column) << error.GetErrMsg();
        EXPECT_NE(std::string(error.GetErrMsg()).find(malformed.expected), std::string::npos) << error.GetErrMsg();
        EXPECT_EQ(std::string(error.GetErrMsg()).rfind(FormatName(malformed.format), 0), 0u) << error.GetErrMsg();
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, MalformedImport, ::testing::ValuesIn(kMalformed));

// What other programs write beside the markers is read past.
TEST(ImportLeniency, ReadsPastWhatIsNotAMarker) {
    const struct {
        Format format;
        const char* text;
        std::size_t markers;
    } kTexts[] = {
        {Format::kYouTube, "My video!\n\nChapters\n00:00 - Start\n1:05 Middle part\n1:02:03 End\nThanks", 3},
        {Format::kFFMetadata, ";FFMETADATA1\ntitle=whole\n# note\n[STREAM]\nx=1\n[CHAPTER]\nSTART=1\nEND=2\n", 1},
        {Format::kWebVTT,
         "\xEF\xBB\xBFWEBVTT - my cues\r\n\r\nNOTE a\r\nnote\r\n\r\nSTYLE\r\n::cue {}\r\n\r\nid1\r\n"
         "01:02.000 --> 01:03.000 align:start\r\nText\r\n",
         1},
        {Format::kSRT, "", 0},
        {Format::kEDL,
         "TITLE: x\nFCM: NON-DROP FRAME\n\n001  AX V C 00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\n"
         "* FROM CLIP NAME: a.mov\n002  AX V D 030 00:00:00:00 00:00:01:00 00:00:01:00 00:00:02:00\n"
         "* LOC: 00:00:01:12 RED     two words\n",
         1},
        {Format::kCSV, "In,Marker Name\n00:00:01:00,a\n\n", 1},
        {Format::kAudacity, "1\t2\tlabel\n\\\t100.0\t2000.0\n", 1},
    };
    for (const auto& text : kTexts) {
        EXPECT_EQ(ImportMarkers(text.text, text.format).size(), text.markers) << FormatName(text.format);
    }
}

}  // namespace
}  // namespace keltemporalxmp::exchange
