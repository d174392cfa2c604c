// Packets that would overflow the stack or take quadratic time in the toolkit
// are refused before it parses them, with bad XML naming the limit and the
// line; everything up to the limits still parses, on a small thread stack too.

#include <gtest/gtest.h>

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <xmptoolkit/XMP.hpp>
#include <xmptoolkit/XMP_PacketLimits.hpp>

#include "robustness/hostile_packets.hpp"

namespace {

using Limits = XMP_PacketLimits;
using namespace hostile;

#if defined(__SANITIZE_ADDRESS__)
// Address sanitizer frames are several times larger and keep redzones.
constexpr std::size_t kHostStack = 4u << 20;
#else
constexpr std::size_t kHostStack = 256u << 10;
#endif

// Runs `work` on a thread with the stack a small host might give it.
void OnSmallStack(const std::function<void()>& work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kHostStack), 0);
    pthread_t thread;
    auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

SXMPMeta Parse(const std::string& packet) {
    return SXMPMeta(packet.data(), static_cast<XMP_StringLen>(packet.size()));
}

std::string RefusalOf(const std::string& packet) {
    try {
        Parse(packet);
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadXML) << error.GetErrMsg();
        return error.GetErrMsg();
    }
    return "accepted";
}

struct NestingForm {
    const char* name;
    std::string open;
    std::string close;
};

// Each way the toolkit recurses: structs, arrays, nested descriptions,
// elements it refuses only after building them, and elements never closed.
const std::vector<NestingForm> kNestingForms = {
    {"parseType Resource", "<dc:p rdf:parseType='Resource'>", "</dc:p>"},
    {"arrays", "<dc:p><rdf:Bag><rdf:li rdf:parseType='Resource'>", "</rdf:li></rdf:Bag></dc:p>"},
    {"descriptions", "<dc:p><rdf:Description>", "</rdf:Description></dc:p>"},
    {"plain elements", "<dc:p>", "</dc:p>"},
};

std::uint64_t ElementsPerStep(const NestingForm& form) {
    return static_cast<std::uint64_t>(std::count(form.open.begin(), form.open.end(), '<'));
}

std::string NestedPacket(const NestingForm& form, std::uint64_t steps) {
    return Wrapped(Repeated(form.open, steps) + "<dc:leaf>v</dc:leaf>" + Repeated(form.close, steps));
}

// The most steps whose levels, with the wrapper and the leaf, stay within the limit.
std::uint64_t StepsWithin(const NestingForm& form) {
    return (Limits::kMaxNestingDepth - kWrapperLevels - 1) / ElementsPerStep(form);
}

TEST(PacketGuard, RefusesNestingPastTheLimitInEveryForm) {
    for (const NestingForm& form : kNestingForms) {
        SCOPED_TRACE(form.name);
        const std::string message = RefusalOf(NestedPacket(form, StepsWithin(form) + 1));
        EXPECT_NE(message.find("kMaxNestingDepth"), std::string::npos) << message;
        // 50,000 levels: what used to overflow the stack of the main thread.
        EXPECT_NE(RefusalOf(NestedPacket(form, 50000 / ElementsPerStep(form))).find("kMaxNestingDepth"),
                  std::string::npos);
    }
    const std::string unclosed = Wrapped("<dc:p>" + Repeated("\n<dc:p>", 1000000));
    const std::string message = RefusalOf(unclosed);
    EXPECT_NE(message.find("ParseFromBuffer failed: bad XML (201): element levels exceed the limit of 128"
                           " (XMP_PacketLimits::kMaxNestingDepth) at line 126"),
              std::string::npos)
        << message;
}

TEST(PacketGuard, DeepestAcceptedPacketsParseSerializeAndFreeOnASmallStack) {
    for (const NestingForm& form : kNestingForms) {
        SCOPED_TRACE(form.name);
        const std::string packet = NestedPacket(form, StepsWithin(form));
        std::string outcome = "not run";
        OnSmallStack([&] {
            try {
                SXMPMeta meta = Parse(packet);
                std::string serialized;
                meta.SerializeToBuffer(&serialized);
                outcome = "parsed";
            } catch (const XMP_Error& error) {
                outcome = error.GetID() == kXMPErr_BadXML ? "guard" : "toolkit";
            }
        });
        EXPECT_EQ(outcome, "parsed");
    }
}

// A struct given as attributes of its element is written back one level
// deeper, so a packet read at the depth limit may not serialize: refused there,
// under the serializer's id, rather than written as a packet nothing reads.
TEST(PacketGuard, SerializingNeverWritesWhatTheGuardRefuses) {
    const NestingForm& form = kNestingForms.front();
    const std::uint64_t steps = StepsWithin(form);
    const std::string packet =
        Wrapped(Repeated(form.open, steps) + "<dc:leaf dc:field='v'/>" + Repeated(form.close, steps));
    SXMPMeta meta = Parse(packet);
    std::string serialized = "untouched";
    try {
        meta.SerializeToBuffer(&serialized);
        FAIL() << "serialized " << serialized.size() << " bytes";
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadSerialize);
        EXPECT_NE(std::string(error.GetErrMsg()).find("kMaxNestingDepth"), std::string::npos) << error.GetErrMsg();
    }
    EXPECT_EQ(serialized, "untouched");
    Parse(Wrapped(Repeated(form.open, steps - 1) + "<dc:leaf dc:field='v'/>" + Repeated(form.close, steps - 1)))
        .SerializeToBuffer(&serialized);
    EXPECT_NO_THROW(Parse(serialized));
}

struct WidthCase {
    const char* name;
    std::function<std::string(std::uint64_t)> packet;
    std::uint64_t limit;
    const char* member;
};

TEST(PacketGuard, RefusesWidthPastTheLimits) {
    const std::vector<WidthCase> cases = {
        {"fields of one struct", NamedSiblings, Limits::kMaxNamedChildren, "kMaxNamedChildren"},
        {"properties over many descriptions", PropertiesInSeparateDescriptions, Limits::kMaxNamedChildren,
         "kMaxNamedChildren"},
        {"attributes of one element", Attributes, Limits::kMaxAttributes, "kMaxAttributes"},
        {"attributes of an empty root", AttributesOfAnEmptyRoot, Limits::kMaxAttributes, "kMaxAttributes"},
        {"items of one array", ArrayItems, Limits::kMaxChildren, "kMaxChildren"},
        {"namespaces, each registered for good", [](std::uint64_t count) { return NamespacedProperties(count); },
         Limits::kMaxNamespaces, "kMaxNamespaces"},
    };
    for (const WidthCase& widthCase : cases) {
        SCOPED_TRACE(widthCase.name);
        const std::string message = RefusalOf(widthCase.packet(widthCase.limit + 1));
        EXPECT_NE(message.find(widthCase.member), std::string::npos) << message;
    }
}

TEST(PacketGuard, LongArraysAndRepeatedDeclarationsStillParse) {
    const SXMPMeta meta = Parse(ArrayItems(300000));
    EXPECT_EQ(meta.CountArrayItems(kDc.c_str(), "subject"), 300000);
    EXPECT_NO_THROW(Parse(NamespacedProperties(Limits::kMaxNamespaces + 1, false)));
}

}  // namespace

namespace {

struct Disguise {
    const char* name;
    std::function<std::string(const std::string&)> apply;
};

std::string Utf16(const std::string& text, bool littleEndian) {
    std::string wide = littleEndian ? "\xFF\xFE" : "\xFE\xFF";
    for (char c : text) {
        wide += littleEndian ? std::string{c, '\0'} : std::string{'\0', c};
    }
    return wide;
}

// A property put before the nesting.
std::string WithProperty(const std::string& packet, const std::string& property) {
    std::string text = packet;
    return text.insert(text.find("<dc:p"), property);
}

// What the toolkit reads although a strict XML parser stops at it: the guard
// must not stop earlier than the toolkit does, or the rest goes unchecked.
const std::vector<Disguise> kDisguises = {
    {"control character", [](const std::string& p) { return "<!-- \x01 -->" + p; }},
    {"Latin-1 byte", [](const std::string& p) { return "<!-- \xE9 -->" + p; }},
    {"UTF-8 byte order mark", [](const std::string& p) { return "\xEF\xBB\xBF" + p; }},
    {"UTF-16 little-endian", [](const std::string& p) { return Utf16(p, true); }},
    {"UTF-16 big-endian", [](const std::string& p) { return Utf16(p, false); }},
    {"UTF-8 name", [](const std::string& p) { return WithProperty(p, "<dc:\xC4\x85>v</dc:\xC4\x85>"); }},
    {"byte read as a space in a tag", [](const std::string& p) { return WithProperty(p, "<dc:a\x8D/>"); }},
    {"byte read as a letter in a name", [](const std::string& p) { return WithProperty(p, "<dc:a\x8A/>"); }},
    {"DEL in a tag", [](const std::string& p) { return WithProperty(p, "<dc:a\x7F/>"); }},
    {"short reference in a tag", [](const std::string& p) { return WithProperty(p, "<dc:a&#x1;/>"); }},
};

// The guard looks for such bytes a word at a time: each is tried at every
// offset within a word.
TEST(PacketGuard, SeesThroughWhatTheToolkitForgives) {
    const NestingForm& form = kNestingForms.front();
    for (const Disguise& disguise : kDisguises) {
        for (std::size_t shift = 0; shift < 8; ++shift) {
            SCOPED_TRACE(std::string(disguise.name) + ", shifted by " + std::to_string(shift));
            const std::string padding = "<!--" + std::string(shift, ' ') + "-->";
            EXPECT_NE(RefusalOf(disguise.apply(WithProperty(NestedPacket(form, 1000), padding))).find("kMaxNestingDepth"),
                      std::string::npos);
            const SXMPMeta meta = Parse(disguise.apply(WithProperty(NestedPacket(form, 2), padding)));
            EXPECT_TRUE(meta.DoesPropertyExist(kDc.c_str(), "p/dc:p/dc:leaf"));
        }
    }
}

// A JPEG whose APP1 segment holds the packet.
std::string JpegWithPacket(const std::string& packet) {
    const std::string payload = std::string("http://ns.adobe.com/xap/1.0/") + '\0' + packet;
    const std::size_t length = payload.size() + 2;
    std::string jpeg = "\xFF\xD8\xFF\xE1";
    jpeg += static_cast<char>(length >> 8);
    jpeg += static_cast<char>(length & 0xFF);
    return jpeg + payload + "\xFF\xD9";
}

class MediaFileGuard : public testing::Test {
protected:
    std::string Write(const std::string& bytes, const std::string& extension = ".jpg") {
        m_path = testing::TempDir() + "guard-" + std::to_string(::getpid()) + extension;
        std::ofstream(m_path, std::ios::binary) << bytes;
        return m_path;
    }

    struct Refusal {
        XMP_Int32 id = 0;
        std::string message;
    };
    // Opens `bytes` as a file only packet scanning reads; a file that opens
    // fails the test.
    Refusal ScannedFileRefusal(const std::string& bytes) {
        try {
            SXMPFiles file(Write(bytes, ".dat").c_str(), kXMP_UnknownFile,
                           kXMPFiles_OpenForRead | kXMPFiles_OpenUsePacketScanning);
            ADD_FAILURE() << "accepted";
        } catch (const XMP_Error& error) {
            return {error.GetID(), error.GetErrMsg()};
        }
        return {};
    }
    void TearDown() override { std::remove(m_path.c_str()); }
    std::string m_path;
};

// A JPEG segment of the given marker and payload.
std::string JpegSegment(char marker, const std::string& payload) {
    const std::size_t length = payload.size() + 2;
    return std::string{'\xFF', marker, static_cast<char>(length >> 8), static_cast<char>(length & 0xFF)} + payload;
}

// A JPEG whose main packet points at an extended packet written in pieces
// of `pieceBytes`; `skipPiece` leaves one piece out (none when npos).
std::string JpegWithExtendedXmp(const std::string& extended, std::size_t pieceBytes,
                                std::size_t skipPiece = std::string::npos) {
    const std::string guid = "0123456789ABCDEF0123456789ABCDEF";
    const std::string main = Wrapped("<xmpNote:HasExtendedXMP xmlns:xmpNote='http://ns.adobe.com/xmp/note/'>" + guid +
                                     "</xmpNote:HasExtendedXMP>");
    std::string jpeg = "\xFF\xD8" + JpegSegment('\xE1', std::string("http://ns.adobe.com/xap/1.0/") + '\0' + main);
    for (std::size_t offset = 0, piece = 0; offset < extended.size(); offset += pieceBytes, ++piece) {
        if (piece == skipPiece) continue;
        std::string header = std::string("http://ns.adobe.com/xmp/extension/") + '\0' + guid;
        for (const std::size_t value : {extended.size(), offset}) {
            for (const int shift : {24, 16, 8, 0}) header += static_cast<char>((value >> shift) & 0xFF);
        }
        jpeg += JpegSegment('\xE1', header + extended.substr(offset, pieceBytes));
    }
    return jpeg + "\xFF\xD9";
}

// The JPEG handler puts extended XMP together from its pieces and parses it:
// split in pieces too short to show its depth, a deep packet crashed a write.
// The pieces are guarded as they will be read, for reading and for update
// alike, and a refused file is left as it was; a shallow one reads whole.
TEST_F(MediaFileGuard, ExtendedXmpIsGuardedAsItIsPutTogether) {
    const NestingForm& form = kNestingForms.front();
    const struct {
        const char* name;
        std::string jpeg;
        const char* refusal;  // null: read
    } kCases[] = {
        {"deep, in 40-byte pieces", JpegWithExtendedXmp(NestedPacket(form, 50000), 40),
         "kMaxNestingDepth) at line 1 of the extended XMP in segments from byte 377"},
        {"deep, in large pieces", JpegWithExtendedXmp(NestedPacket(form, 50000), 60000), "kMaxNestingDepth"},
        {"a piece missing", JpegWithExtendedXmp(NestedPacket(form, 20), 40, 3), "leave gaps"},
        {"shallow, in pieces", JpegWithExtendedXmp(NestedPacket(form, 20), 40), nullptr},
    };
    for (const auto& testCase : kCases) {
        SCOPED_TRACE(testCase.name);
        const std::string path = Write(testCase.jpeg);
        for (const XMP_OptionBits mode : {kXMPFiles_OpenForRead, kXMPFiles_OpenForUpdate}) {
            try {
                SXMPFiles file(path.c_str(), kXMP_UnknownFile, mode);
                SXMPMeta meta;
                ASSERT_TRUE(file.GetXMP(&meta));
                EXPECT_TRUE(meta.DoesPropertyExist(kDc.c_str(), "p"));
                if (mode == kXMPFiles_OpenForUpdate) {
                    meta.SetProperty(kDc.c_str(), "written", "yes");
                    file.PutXMP(meta);
                    file.CloseFile();
                }
                EXPECT_EQ(testCase.refusal, nullptr);
            } catch (const XMP_Error& error) {
                ASSERT_NE(testCase.refusal, nullptr) << error.GetErrMsg();
                EXPECT_NE(std::string(error.GetErrMsg()).find(testCase.refusal), std::string::npos)
                    << error.GetErrMsg();
            }
        }
        if (testCase.refusal != nullptr) {
            std::ifstream in(path, std::ios::binary);
            EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), testCase.jpeg);
        } else {
            // The write kept what the extended XMP held.
            SXMPFiles file(path.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead);
            SXMPMeta meta;
            ASSERT_TRUE(file.GetXMP(&meta));
            EXPECT_TRUE(meta.DoesPropertyExist(kDc.c_str(), "written"));
            EXPECT_TRUE(meta.DoesPropertyExist(kDc.c_str(), "p"));
        }
    }
}

// Bytes the toolkit reads as wider characters must not carry the search for
// the next packet past its start.
TEST_F(MediaFileGuard, FindsThePacketRightAfterOneWithRepairedBytes) {
    const NestingForm& form = kNestingForms.front();
    std::string repaired = NestedPacket(form, 2);
    repaired.insert(repaired.rfind("</x:xmpmeta>"), "<!--" + std::string(200000, '\x80') + "-->");
    const std::string path = Write(JpegWithPacket(repaired + NestedPacket(form, 2000)));
    try {
        SXMPFiles file(path.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead);
        ADD_FAILURE() << "accepted";
    } catch (const XMP_Error& error) {
        EXPECT_NE(std::string(error.GetErrMsg()).find("kMaxNestingDepth"), std::string::npos) << error.GetErrMsg();
    }
}

// A handler hands the toolkit whatever its container holds, which need not
// start with a packet's usual first element: every start tag in the file's
// bytes may be where a packet begins, in bytes or in UTF-16, also where an
// earlier stretch of markup took it for a comment or CDATA.
TEST_F(MediaFileGuard, FindsDeepMarkupWhereverAHandlerMayStart) {
    const std::string deep = NestedPacket(kNestingForms.front(), 2000);
    const std::string wrapped = "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?>" + deep + "<?xpacket end='w'?>";
    const std::string unclosed = Repeated("<a>", 2000) + NestedPacket(kNestingForms.front(), 2);
    // Starts of packets that go nowhere, in bytes and in UTF-16.
    constexpr char kFalseStarts[] = "<x:xmp <rdf:R \0<\0?\0x <\0?\0x <?xpacket";
    const std::string noise = std::string(kFalseStarts, sizeof kFalseStarts - 1) + std::string(300, '\0') + ".";
    const struct {
        const char* name;
        std::string bytes;  // after the noise
        std::size_t root;   // where the refused markup starts in them
    } kCases[] = {
        {"xpacket header", wrapped, wrapped.find("<x:xmpmeta")},
        {"x:xmpmeta", deep, 0},
        {"rdf:RDF", deep.substr(deep.find("<rdf:RDF")), 0},
        {"UTF-16 little-endian", Utf16(wrapped, true).substr(2), 2 * wrapped.find("<x:xmpmeta")},
        {"UTF-16 big-endian", Utf16(wrapped, false).substr(2), 2 * wrapped.find("<x:xmpmeta")},
        {"UTF-16 without a header", Utf16(deep, true).substr(2), 0},
        {"elements before the packet, never closed", unclosed, 0},
        {"after a zero byte", std::string(1, '\0') + unclosed, 1},
        {"hidden in CDATA", "<b><![CDATA[" + unclosed + "]]></b>", 12},
        {"hidden in a comment", "<b><!-- " + unclosed + " --></b>", 8},
    };
    for (const auto& testCase : kCases) {
        SCOPED_TRACE(testCase.name);
        const std::string message = ScannedFileRefusal(noise + testCase.bytes).message;
        const std::string where = "kMaxNestingDepth) at line 1 of the packet at byte ";
        const std::size_t found = message.find(where);
        ASSERT_NE(found, std::string::npos) << message;
        // UTF-16 that reads both ways round is named by either first byte.
        const long long byte = std::stoll(message.substr(found + where.size()));
        EXPECT_LE(std::llabs(byte - static_cast<long long>(noise.size() + testCase.root)), 1) << message;
    }
}

// Each start tag begins a pass; a pass that ends a few bytes on must not
// have looked at the rest of the file first (a million of them took hours).
TEST_F(MediaFileGuard, AMillionFalseStartsAreEachReadOnlyAsFarAsTheyGo) {
    const std::string falseStarts = Repeated("<a ", 1000000);
    const std::string message = ScannedFileRefusal(falseStarts + NestedPacket(kNestingForms.front(), 2000)).message;
    EXPECT_NE(message.find("kMaxNestingDepth) at line 1 of the packet at byte " + std::to_string(falseStarts.size())),
              std::string::npos)
        << message;
}

// Every start tag inside CDATA begins a pass that reads to the end again:
// past a bound on re-reading, the file is refused rather than read for hours.
TEST_F(MediaFileGuard, MarkupThatOverlapsItselfWithoutEndIsRefused) {
    const Refusal refusal = ScannedFileRefusal(Repeated("<a><![CDATA[", 10000) + "]]></a>");
    EXPECT_EQ(refusal.id, kXMPErr_BadXML);
    EXPECT_NE(refusal.message.find("markup that overlaps itself more often than the guard reads it"), std::string::npos)
        << refusal.message;
}

TEST_F(MediaFileGuard, RefusesADeepPacketBeforeTheFileHandlerParsesIt) {
    const NestingForm& form = kNestingForms.front();
    const std::string deep = Write(JpegWithPacket("<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?>" +
                                                  NestedPacket(form, 2000) + "<?xpacket end='w'?>"));
    try {
        SXMPFiles file(deep.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead);
        SXMPMeta meta;
        file.GetXMP(&meta);
        ADD_FAILURE() << "accepted";
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadXML);
        EXPECT_NE(std::string(error.GetErrMsg()).find("kMaxNestingDepth) at line 1 of the packet at byte 85"),
                  std::string::npos)
            << error.GetErrMsg();
    }
    const std::string shallow = Write(JpegWithPacket(NestedPacket(form, 2)));
    SXMPFiles file(shallow.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead);
    SXMPMeta meta;
    ASSERT_TRUE(file.GetXMP(&meta));
    EXPECT_TRUE(meta.DoesPropertyExist(kDc.c_str(), "p/dc:p/dc:leaf"));
}

}  // namespace

namespace {

// The serializer indents every line by its depth, so its output grows with
// depth times size; the depth limit keeps that a small factor.
TEST(PacketGuard, SerializingAtTheDepthLimitStaysProportional) {
    const NestingForm& form = kNestingForms.front();
    const std::uint64_t steps = StepsWithin(form) - 2;  // room for the array and its items
    const std::string packet =
        Wrapped(Repeated(form.open, steps) + "<dc:b><rdf:Bag>" + Repeated("<rdf:li>v</rdf:li>", 5000) +
                "</rdf:Bag></dc:b>" + Repeated(form.close, steps));
    std::string serialized;
    Parse(packet).SerializeToBuffer(&serialized);
    EXPECT_LT(serialized.size(), 10 * packet.size());
}

}  // namespace

namespace {

// The toolkit writes rdf:about and namespace URIs back as they are, unescaped:
// such a packet would be saved as one that nothing can read, so it is refused.
TEST(PacketGuard, RefusesAnAboutOrNamespaceThatCouldNotBeWrittenBack) {
    const std::string property = "<dc:format>v</dc:format>";
    const auto packet = [&](const std::string& about, const std::string& uri) {
        return "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'"
               " xmlns:dc='" +
               uri + "'><rdf:Description rdf:about='" + about + "'>" + property +
               "</rdf:Description></rdf:RDF></x:xmpmeta>";
    };
    for (const std::string text : {"\"", "&lt;x", "a&amp;b"}) {
        SCOPED_TRACE(text);
        EXPECT_NE(RefusalOf(packet(text, kDc)).find("rdf:about"), std::string::npos);
        EXPECT_NE(RefusalOf(packet("", "urn:" + text)).find("namespace URI"), std::string::npos);
    }
    std::string serialized;
    Parse(Wrapped(property)).SerializeToBuffer(&serialized);
    EXPECT_TRUE(Parse(serialized).DoesPropertyExist(kDc.c_str(), "format"));
}

}  // namespace
