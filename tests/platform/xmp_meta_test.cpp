#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <iostream>
#include <thread>
#include <vector>

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
        {"iterator start", [&] { SXMPIterator(meta, kXMP_NS_DM, "s[", 0); }, kXMPErr_BadXPath},
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
    // The count is searched for by doubling: each count around a power of two.
    int count = 0;
    for (const int target : {1, 2, 3, 4, 5, 1023, 1024, 1025, 10000}) {
        for (; count < target; ++count) {
            meta.AppendArrayItem(kXMP_NS_DC, "subject", kXMP_PropArrayIsUnordered, "k");
        }
        EXPECT_EQ(meta.CountArrayItems(kXMP_NS_DC, "subject"), target);
    }
}

// Clone is a deep copy; a trip through a packet would make the German title read "Hello".
TEST(XMPMeta, CopiesShareAndClonesAreIndependentAndKeepAltTextApart) {
    SXMPMeta original;
    original.SetLocalizedText(kXMP_NS_DC, "title", "", "x-default", "Hello");
    original.SetLocalizedText(kXMP_NS_DC, "title", "", "de", "Hallo");
    SXMPMeta shared = original;
    SXMPMeta clone = original.Clone();
    EXPECT_EQ(Serialized(clone), Serialized(original));
    EXPECT_EQ(Value(clone, kXMP_NS_DC, "title[2]"), "Hallo");
    shared.SetProperty(kXMP_NS_DC, "format", "b");
    clone.SetProperty(kXMP_NS_DC, "source", "c");
    EXPECT_EQ(Value(original, kXMP_NS_DC, "format"), "b");
    EXPECT_FALSE(clone.DoesPropertyExist(kXMP_NS_DC, "format"));
    EXPECT_FALSE(original.DoesPropertyExist(kXMP_NS_DC, "source"));
}

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
