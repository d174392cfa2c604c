#pragma once
// The XML parser under the streaming reader: expat with namespace processing,
// fed the packet piece by piece. What the toolkit would refuse or read
// differently at the XML level (a document type, another encoding, a byte
// count past the limit, any XML error) makes the walk give up.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <expat.h>

#include "streamread/RdfWalk.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] streamread {

class PacketParser {
public:
    explicit PacketParser(RdfWalk& walk);
    ~PacketParser();
    PacketParser(const PacketParser&) = delete;
    PacketParser& operator=(const PacketParser&) = delete;

    // False once the walk gave up; the last piece is fed with isLast.
    bool Feed(std::string_view text, bool isLast);

private:
    static void XMLCALL OnStart(void* self, const XML_Char* name, const XML_Char** attributes);
    static void XMLCALL OnEnd(void* self, const XML_Char* name);
    static void XMLCALL OnNamespace(void* self, const XML_Char* prefix, const XML_Char* uri);
    static void XMLCALL OnText(void* self, const XML_Char* text, int length);
    static void XMLCALL OnComment(void* self, const XML_Char* text);
    static void XMLCALL OnInstruction(void* self, const XML_Char* target, const XML_Char* data);
    static void XMLCALL OnDoctype(void* self, const XML_Char* name, const XML_Char* systemId, const XML_Char* publicId,
                                  int hasInternalSubset);
    static void XMLCALL OnDeclaration(void* self, const XML_Char* version, const XML_Char* encoding, int standalone);
    bool HoldsQuirk(std::string_view text);
    void StopIfGaveUp();

    RdfWalk& m_walk;
    XML_Parser m_parser;
    std::uint64_t m_bytes = 0;
    std::vector<XmlName> m_attributeNames;         // reused for every element
    std::string m_tail;                            // the last bytes fed
    std::unordered_set<std::string> m_namespaces;  // distinct URIs declared
};

}  // namespace streamread
}  // namespace keltemporalxmp
