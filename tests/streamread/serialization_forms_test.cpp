// The streaming reader against the toolkit on each way a packet may write the
// track list: where it reads, its records are the toolkit's, field by field;
// where it cannot be sure, it hands the packet over.

#include <cctype>
#include <string>

#include <gtest/gtest.h>

#include "../fuzz/TrackAnswers.hpp"

namespace {

using keltemporalxmp::fuzz::Answer;
using keltemporalxmp::fuzz::StreamAnswer;
using keltemporalxmp::fuzz::ToolkitAnswer;

constexpr const char* kRdfNS = "http://www.w3.org/1999/02/22-rdf-syntax-ns#";

std::string Packet(const std::string& body, const std::string& descriptionAttributes = "") {
    return std::string("<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n") +
           "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\" x:xmptk=\"test\">\n <rdf:RDF xmlns:rdf=\"" + kRdfNS +
           "\">\n  <rdf:Description rdf:about=\"\" xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\"" +
           " xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\"" + descriptionAttributes + ">\n" + body +
           "\n  </rdf:Description>\n </rdf:RDF>\n</x:xmpmeta>\n<?xpacket end=\"w\"?>";
}

// A track list of one track holding the given markers.
std::string Track(const std::string& markers,
                  const std::string& trackFields = "<xmpDM:frameRate>f25</xmpDM:frameRate>") {
    return "<xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType=\"Resource\"><xmpDM:trackName>T</xmpDM:trackName>" +
           trackFields + "<xmpDM:markers><rdf:Seq>" + markers +
           "</rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks>";
}

std::string Marker(const std::string& fields) {
    return "<rdf:li rdf:parseType=\"Resource\">" + fields + "</rdf:li>";
}

const std::string kFields =
    "<xmpDM:startTime>10</xmpDM:startTime><xmpDM:duration>5</xmpDM:duration><xmpDM:name>A</xmpDM:name>";

// Little-endian with a byte order mark; the packets here are ASCII but for the mark.
std::string Utf16(const std::string& ascii) {
    std::string text = "\xFF\xFE";
    for (const char c : ascii) {
        if (static_cast<unsigned char>(c) < 0x80) {
            text += c;
            text += '\0';
        }
    }
    return text;
}

// Properties each declaring its namespace: distinct URIs, or all `shared`.
std::string Namespaces(int count, const std::string& shared = "") {
    std::string properties;
    for (int i = 0; i < count; ++i) {
        const std::string name = "n" + std::to_string(i) + ":p" + std::to_string(i);
        properties += "<" + name + " xmlns:n" + std::to_string(i) + "=\"http://example.com/" +
                      (shared.empty() ? std::to_string(i) : shared) + "/\">v</" + name + ">";
    }
    return properties;
}

enum class Expect { kRead, kHandedOver };

struct Form {
    const char* name;
    std::string packet;
    Expect expect;
};

const Form kForms[] = {
    {"element fields", Packet(Track(Marker(kFields))), Expect::kRead},
    {"nested description", Packet(Track("<rdf:li><rdf:Description>" + kFields + "</rdf:Description></rdf:li>")),
     Expect::kRead},
    {"attribute fields", Packet(Track("<rdf:li xmpDM:startTime=\"10\" xmpDM:name=\"A &amp; B\"/>")), Expect::kRead},
    {"description attributes",
     Packet(Track("<rdf:li><rdf:Description xmpDM:startTime=\"7\" xmpDM:comment=\"c\"><xmpDM:name>N</xmpDM:name>"
                  "</rdf:Description></rdf:li>")),
     Expect::kRead},
    {"track in nested description",
     Packet("<xmpDM:Tracks><rdf:Seq><rdf:li><rdf:Description xmpDM:trackName=\"D\" xmpDM:frameRate=\"f30\">"
            "<xmpDM:markers><rdf:Bag>" +
            Marker(kFields) + "</rdf:Bag></xmpDM:markers></rdf:Description></rdf:li></rdf:Seq></xmpDM:Tracks>"),
     Expect::kRead},
    {"other prefix",
     "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
     "<rdf:Description rdf:about=\"\" xmlns:dm=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\"><dm:Tracks><rdf:Bag>"
     "<rdf:li rdf:parseType=\"Resource\"><dm:trackName>P</dm:trackName><dm:markers><rdf:Seq><rdf:li "
     "rdf:parseType=\"Resource\"><dm:name>x</dm:name><dm:startTime>3</dm:startTime></rdf:li></rdf:Seq>"
     "</dm:markers></rdf:li></rdf:Bag></dm:Tracks></rdf:Description></rdf:RDF></x:xmpmeta>",
     Expect::kRead},
    {"bare rdf root",
     std::string("<rdf:RDF xmlns:rdf=\"") + kRdfNS +
         "\"><rdf:Description xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\">" + Track(Marker(kFields)) +
         "</rdf:Description></rdf:RDF>",
     Expect::kRead},
    {"references and CDATA",
     Packet(Track(Marker("<xmpDM:name>a&lt;b&#65;&quot;</xmpDM:name><xmpDM:comment><![CDATA[<c> & d]]>"
                         "</xmpDM:comment><xmpDM:startTime>1</xmpDM:startTime>"))),
     Expect::kRead},
    {"hexadecimal reference", Packet(Track(Marker("<xmpDM:name>&#x42;</xmpDM:name>"))), Expect::kHandedOver},
    {"whitespace values",
     Packet(Track(Marker("<xmpDM:name>  padded \n line </xmpDM:name><xmpDM:comment>   </xmpDM:comment>"
                         "<xmpDM:location></xmpDM:location><xmpDM:target/>"))),
     Expect::kRead},
    {"rate after markers",
     Packet(Track(Marker(kFields) + Marker("<xmpDM:startTime>2</xmpDM:startTime>"),
                  "<xmpDM:trackType>Cue</xmpDM:trackType>") +
            ""),
     Expect::kRead},
    {"cue points, ids and keywords",
     Packet(Track(Marker(kFields +
                         "<xmpDM:cuePointParams><rdf:Seq><rdf:li rdf:parseType=\"Resource\"><xmpDM:key>k</xmpDM:key>"
                         "<xmpDM:value>v</xmpDM:value></rdf:li><rdf:li xmpDM:key=\"marker_guid\" xmpDM:value=\"id-7\"/>"
                         "<rdf:li rdf:parseType=\"Resource\"><xmpDM:key>keywordExtKELv1_kw</xmpDM:key><xmpDM:value>"
                         "{\"name\":\"tag\"}</xmpDM:value></rdf:li></rdf:Seq></xmpDM:cuePointParams>"))),
     Expect::kRead},
    {"fields of other schemas and qualifiers",
     Packet(Track(Marker(kFields + "<xmp:Label>x</xmp:Label><xmpDM:speaker xml:lang=\"en\">Ann</xmpDM:speaker>"))),
     Expect::kRead},
    {"items that are not structs",
     Packet("<xmpDM:Tracks><rdf:Bag><rdf:li>plain</rdf:li><rdf:li rdf:parseType=\"Resource\"><xmpDM:markers>"
            "<rdf:Seq><rdf:li>text</rdf:li><rdf:li/>" +
            Marker(kFields) + "</rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks>"),
     Expect::kRead},
    {"track list in a second description",
     Packet("<xmp:Label>first</xmp:Label>\n  </rdf:Description>\n  <rdf:Description rdf:about=\"\" "
            "xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\">" +
            Track(Marker(kFields))),
     Expect::kRead},
    {"unconvertible time", Packet(Track(Marker("<xmpDM:startTime>12f0</xmpDM:startTime>"))), Expect::kRead},
    {"keyword that is not JSON",
     Packet(Track(Marker("<xmpDM:cuePointParams><rdf:Seq><rdf:li xmpDM:key=\"keywordExtKELv1_x\" "
                         "xmpDM:value=\"{\"/></rdf:Seq></xmpDM:cuePointParams>"))),
     Expect::kRead},

    {"value with qualifiers",
     Packet(Track(Marker("<xmpDM:name rdf:parseType=\"Resource\"><rdf:value>v</rdf:value><xmp:q>q</xmp:q>"
                         "</xmpDM:name>"))),
     Expect::kHandedOver},
    {"language alternatives where nothing is read",
     Packet(Track(Marker("<xmpDM:name><rdf:Alt><rdf:li xml:lang=\"en\">a</rdf:li><rdf:li xml:lang=\"x-default\">"
                         "b</rdf:li></rdf:Alt></xmpDM:name>"))),
     Expect::kRead},
    {"alternatives read as a list",
     Packet("<xmpDM:Tracks><rdf:Alt><rdf:li xml:lang=\"en\" rdf:parseType=\"Resource\"><xmpDM:trackName>T"
            "</xmpDM:trackName></rdf:li></rdf:Alt></xmpDM:Tracks>"),
     Expect::kHandedOver},
    {"property given twice", Packet(Track(Marker(kFields)) + "<xmp:Label>a</xmp:Label><xmp:Label>b</xmp:Label>"),
     Expect::kHandedOver},
    {"field given twice", Packet(Track(Marker(kFields + "<xmpDM:name>B</xmpDM:name>"))), Expect::kHandedOver},
    {"track list given twice",
     Packet(Track(Marker(kFields)) +
            "\n  </rdf:Description>\n  <rdf:Description rdf:about=\"\" "
            "xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\">" +
            Track("")),
     Expect::kHandedOver},
    {"document type", "<!DOCTYPE x [<!ENTITY e \"v\">]>" + Packet(Track(Marker(kFields))), Expect::kHandedOver},
    {"comment inside", Packet(Track(Marker(kFields + "<!-- note -->"))), Expect::kHandedOver},
    {"control character", Packet(Track(Marker("<xmpDM:name>a\x01b</xmpDM:name>"))), Expect::kHandedOver},
    {"delete character", Packet(Track(Marker("<xmpDM:name>a\x7F</xmpDM:name>"))), Expect::kHandedOver},
    {"C1 control character",
     Packet(Track(Marker("<xmpDM:name>a\xC2\x85"
                         "b\xC2\x9F</xmpDM:name>"))),
     Expect::kRead},
    {"bytes that are not UTF-8", Packet(Track(Marker("<xmpDM:name>caf\xE9</xmpDM:name>"))), Expect::kHandedOver},
    {"resource reference", Packet(Track(Marker("<xmpDM:target rdf:resource=\"http://x/\"/>"))), Expect::kHandedOver},
    {"typed node", Packet(Track("<rdf:li><xmpDM:Marker/></rdf:li>")), Expect::kHandedOver},
    {"different subjects",
     Packet("<xmp:Label>a</xmp:Label></rdf:Description><rdf:Description rdf:about=\"other\">"
            "<xmp:Rating>1</xmp:Rating>"),
     Expect::kHandedOver},
    {"truncated", Packet(Track(Marker(kFields))).substr(0, 300), Expect::kHandedOver},
    {"namespaces past the limit", Packet(Track(Marker(kFields)) + Namespaces(1000)), Expect::kHandedOver},
    {"one namespace declared again and again", Packet(Track(Marker(kFields)) + Namespaces(1000, "same")),
     Expect::kRead},
    {"not XMP", "<html><body/></html>", Expect::kHandedOver},
    {"empty", "", Expect::kHandedOver},
    {"UTF-16", Utf16(Packet(Track(Marker(kFields)))), Expect::kRead},
    {"UTF-16 hexadecimal reference", Utf16(Packet(Track(Marker("<xmpDM:name>&#x42;</xmpDM:name>")))),
     Expect::kHandedOver},
};

class SerializationForms : public testing::TestWithParam<Form> {};

TEST_P(SerializationForms, ReadLikeTheToolkitOrHandedOver) {
    const Form& form = GetParam();
    const Answer toolkit = ToolkitAnswer(form.packet);
    const Answer stream = StreamAnswer(form.packet);
    if (form.expect == Expect::kRead) {
        ASSERT_FALSE(stream.handedOver);
        EXPECT_EQ(stream.text, toolkit.text);
    } else {
        EXPECT_TRUE(stream.handedOver) << stream.text;
    }
    // Fed in small pieces, the answer is the same.
    const Answer pieces = StreamAnswer(form.packet, 7);
    EXPECT_EQ(pieces.handedOver, stream.handedOver);
    EXPECT_EQ(pieces.text, stream.text);
}

INSTANTIATE_TEST_SUITE_P(StreamRead, SerializationForms, testing::ValuesIn(kForms),
                         [](const testing::TestParamInfo<Form>& param) {
                             std::string name = param.param.name;
                             for (char& c : name) {
                                 c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
                             }
                             return name;
                         });

}  // namespace
