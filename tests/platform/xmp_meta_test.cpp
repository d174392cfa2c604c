#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>
#include <iostream>

#include "xmp_test_packets.hpp"

namespace {

using xmp_test::Parsed;
using xmp_test::Serialized;
using xmp_test::Value;
using xmp_test::Wrapped;

int ErrorIdOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const XMP_Error& error) {
        return error.GetID();
    }
    return 0;
}

TEST(XMPMeta, RoundTripsEditsOfArraysOfStructsInsideStructs) {
    SXMPMeta meta = Parsed(Wrapped("<rdf:Description rdf:about='' dc:format='video/mp4'/>"));
    xmp_test::AddMarkers(&meta, 3);
    meta.SetStructField(kXMP_NS_DM, "Tracks[1]", kXMP_NS_DM, "trackName", "Cues");
    meta.SetLocalizedText(kXMP_NS_DM, "Tracks[1]/xmpDM:markers[2]/xmpDM:comment", "", "x-default", "second");
    meta.DeleteArrayItem(kXMP_NS_DM, "Tracks[1]/xmpDM:markers", 1);

    const SXMPMeta reread = Parsed(Serialized(meta));
    EXPECT_EQ(Value(reread, kXMP_NS_DC, "format"), "video/mp4");
    EXPECT_EQ(reread.CountArrayItems(kXMP_NS_DM, "Tracks[1]/xmpDM:markers"), 2);
    std::string name;
    EXPECT_TRUE(reread.GetStructField(kXMP_NS_DM, "Tracks[1]/xmpDM:markers[1]", kXMP_NS_DM, "name", &name, nullptr));
    EXPECT_EQ(name, "m2");
    EXPECT_EQ(Value(reread, kXMP_NS_DM, "Tracks[1]/xmpDM:trackName"), "Cues");
    std::string lang;
    std::string comment;
    EXPECT_TRUE(reread.GetLocalizedText(kXMP_NS_DM, "Tracks[1]/xmpDM:markers[1]/xmpDM:comment", "", "en", &lang,
                                        &comment, nullptr));
    EXPECT_EQ(comment, "second");
    EXPECT_EQ(lang, "x-default");
}

TEST(XMPMeta, ParsesBareRdfAndPacketWrappers) {
    const std::string description = "<rdf:Description rdf:about='' dc:format='a/b'/>";
    for (const std::string& packet : {
             xmp_test::kRdfOpen + description + xmp_test::kRdfClose,
             "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?>" + xmp_test::kRdfOpen + description +
                 xmp_test::kRdfClose + "<?xpacket end='w'?>",
             Wrapped(description),
         }) {
        EXPECT_EQ(Value(Parsed(packet), kXMP_NS_DC, "format"), "a/b") << packet;
    }
}

TEST(XMPMeta, BadPacketsRaiseTheirErrorAndLeaveTheObjectUnchanged) {
    const struct {
        std::string m_packet;
        int m_id;
    } cases[] = {
        {"hello", kXMPErr_BadXML},
        {Wrapped("<rdf:Description rdf:about=''>"), kXMPErr_BadXML},
        {Wrapped("<rdf:Description rdf:about=''><format>a</format></rdf:Description>"), kXMPErr_BadRDF},
        {Wrapped("<rdf:Description rdf:about='' dc:format='x'/><rdf:Description rdf:about='' dc:format='y'/>"),
         kXMPErr_BadXMP},
    };
    SXMPMeta meta = Parsed(Wrapped("<rdf:Description rdf:about='' dc:format='kept'/>"));
    const std::string before = Serialized(meta);
    for (const auto& [packet, id] : cases) {
        try {
            meta.ParseFromBuffer(packet.data(), static_cast<XMP_StringLen>(packet.size()));
            ADD_FAILURE() << "parsed: " << packet;
        } catch (const XMP_Error& error) {
            EXPECT_EQ(error.GetID(), id) << packet;
            EXPECT_TRUE(std::string(error.GetErrMsg()).starts_with("ParseFromBuffer failed")) << error.GetErrMsg();
        }
        EXPECT_EQ(Serialized(meta), before);
    }
}

TEST(XMPMeta, ToolkitMessagesBecomeErrorTextNotTerminalOutput) {
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_DM, "simple", "v");
    testing::internal::CaptureStderr();
    try {
        meta.SetProperty(kXMP_NS_DM, "simple[3]/xmpDM:name", "x");
        ADD_FAILURE();
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadXPath);
        EXPECT_STREQ(error.GetErrMsg(),
                     "SetProperty failed on simple[3]/xmpDM:name: bad XPath (102): Indexing applied to non-array");
    }
    std::cerr << "the host's own line" << std::endl;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "the host's own line\n");
}

TEST(XMPMeta, BadPathsAndNullOutputsRaiseTheirIds) {
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_DM, "simple", "v");
    const struct {
        const char* m_what;
        std::function<void()> m_action;
        int m_id;
    } cases[] = {
        {"index on a simple value", [&] { meta.GetArrayItem(kXMP_NS_DM, "simple", 1, nullptr, nullptr); },
         kXMPErr_BadXPath},
        {"count of a simple value", [&] { meta.CountArrayItems(kXMP_NS_DM, "simple"); }, kXMPErr_BadXPath},
        {"unregistered namespace", [&] { meta.SetProperty("urn:nowhere", "p", "v"); }, kXMPErr_BadSchema},
        {"unbalanced bracket", [&] { meta.DoesPropertyExist(kXMP_NS_DM, "a[1"); }, kXMPErr_BadXPath},
        {"text for a struct", [&] { meta.SetProperty(kXMP_NS_DM, "s", "text", kXMP_PropValueIsStruct); },
         kXMPErr_BadOptions},
        {"null packet", [&] { meta.SerializeToBuffer(nullptr); }, kXMPErr_BadParam},
        {"null path", [&] { meta.GetProperty(kXMP_NS_DM, nullptr, nullptr, nullptr); }, kXMPErr_BadParam},
        {"null buffer", [&] { meta.ParseFromBuffer(nullptr, 4); }, kXMPErr_BadParam},
    };
    for (const auto& [what, action, id] : cases) {
        EXPECT_EQ(ErrorIdOf(action), id) << what;
    }
}

TEST(XMPMeta, CountsMissingEmptyAndLargeArrays) {
    SXMPMeta meta;
    EXPECT_EQ(meta.CountArrayItems(kXMP_NS_DM, "missing"), 0);
    meta.SetProperty(kXMP_NS_DM, "empty", "", kXMP_PropArrayIsOrdered);
    EXPECT_EQ(meta.CountArrayItems(kXMP_NS_DM, "empty"), 0);
    for (int count : {1, 2, 3, 1000, 10000}) {
        SXMPMeta large;
        for (int i = 0; i < count; ++i) {
            large.AppendArrayItem(kXMP_NS_DC, "subject", kXMP_PropArrayIsUnordered, "k");
        }
        EXPECT_EQ(large.CountArrayItems(kXMP_NS_DC, "subject"), count);
    }
}

TEST(XMPMeta, CopiesShareAndClonesAreIndependent) {
    SXMPMeta original;
    original.SetProperty(kXMP_NS_DC, "format", "a");
    SXMPMeta shared = original;
    SXMPMeta clone = original.Clone();
    shared.SetProperty(kXMP_NS_DC, "format", "b");
    clone.SetProperty(kXMP_NS_DC, "source", "c");
    EXPECT_EQ(Value(original, kXMP_NS_DC, "format"), "b");
    EXPECT_EQ(Value(clone, kXMP_NS_DC, "format"), "a");
    EXPECT_FALSE(original.DoesPropertyExist(kXMP_NS_DC, "source"));

    shared.Erase();
    EXPECT_FALSE(original.DoesPropertyExist(kXMP_NS_DC, "format"));
}

// A trip through a packet would make the German title read "Hello".
TEST(XMPMeta, CloneKeepsTwoLanguageAltTextApart) {
    SXMPMeta original;
    original.SetLocalizedText(kXMP_NS_DC, "title", "", "x-default", "Hello");
    original.SetLocalizedText(kXMP_NS_DC, "title", "", "de", "Hallo");
    const SXMPMeta clone = original.Clone();
    EXPECT_EQ(Serialized(clone), Serialized(original));
    EXPECT_EQ(Value(clone, kXMP_NS_DC, "title[2]"), "Hallo");
}

TEST(XMPMeta, QualifiersAndStructFields) {
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_DM, "s", "", kXMP_PropValueIsStruct);
    meta.SetStructField(kXMP_NS_DM, "s", kXMP_NS_DC, "format", "f");
    meta.SetQualifier(kXMP_NS_DM, "s/dc:format", kXMP_NS_XML, "lang", "fr");
    std::string value;
    EXPECT_TRUE(meta.GetQualifier(kXMP_NS_DM, "s/dc:format", kXMP_NS_XML, "lang", &value, nullptr));
    EXPECT_EQ(value, "fr");
    EXPECT_TRUE(meta.DoesStructFieldExist(kXMP_NS_DM, "s", kXMP_NS_DC, "format"));
    meta.DeleteStructField(kXMP_NS_DM, "s", kXMP_NS_DC, "format");
    EXPECT_FALSE(meta.DoesStructFieldExist(kXMP_NS_DM, "s", kXMP_NS_DC, "format"));
    EXPECT_FALSE(meta.GetStructField(kXMP_NS_DM, "s", kXMP_NS_DC, "format", &value, nullptr));
}

TEST(XMPMeta, Namespaces) {
    std::string text;
    EXPECT_TRUE(SXMPMeta::GetNamespacePrefix(kXMP_NS_DM, &text));
    EXPECT_EQ(text, "xmpDM:");
    EXPECT_TRUE(SXMPMeta::GetNamespaceURI("xmpDM", &text));
    EXPECT_EQ(text, kXMP_NS_DM);
    EXPECT_FALSE(SXMPMeta::GetNamespacePrefix("urn:kel:unknown/", &text));
    EXPECT_TRUE(SXMPMeta::RegisterNamespace("urn:kel:meta-test/", "kelMetaTest", &text));
    EXPECT_EQ(text, "kelMetaTest:");
    EXPECT_FALSE(SXMPMeta::RegisterNamespace("urn:kel:meta-test-2/", "kelMetaTest", &text));
    EXPECT_NE(text, "kelMetaTest:");
}

}  // namespace

namespace {

// Each thread fails in its own way; shared toolkit error state must not mix the ids up.
TEST(XMPMeta, ThreadsGetTheirOwnErrors) {
    const std::string packet = Wrapped("<rdf:Description rdf:about='' xmpDM:simple='v'/>");
    const struct {
        const char* m_path;
        XMP_OptionBits m_options;
        int m_id;
    } cases[] = {{"simple[2]", 0, kXMPErr_BadXPath},
                 {"s", kXMP_PropValueIsStruct, kXMPErr_BadOptions},
                 {"a[1", 0, kXMPErr_BadXPath},
                 {"fine", 0, 0}};
    std::atomic<int> mismatches = 0;
    std::vector<std::thread> threads;
    for (const auto& failure : cases) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                SXMPMeta meta = Parsed(packet);
                const int id = ErrorIdOf([&] { meta.SetProperty(kXMP_NS_DM, failure.m_path, "x", failure.m_options); });
                mismatches += id != failure.m_id ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(mismatches, 0);
}

}  // namespace
