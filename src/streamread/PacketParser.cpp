#include "streamread/PacketParser.hpp"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

#include <xmptoolkit/XMP_PacketLimits.hpp>

namespace keltemporalxmp::streamread {
namespace {

// Splits URI from local name; the separator cannot occur in either.
constexpr XML_Char kNameSeparator = '\x01';

// Large pieces keep the per-call cost negligible; expat takes an int length.
constexpr std::size_t kPieceBytes = std::size_t{1} << 24;

XmlName SplitName(const XML_Char* name) {
    const std::string_view text(name);
    const std::size_t separator = text.find(kNameSeparator);
    if (separator == std::string_view::npos) {
        return {{}, text};
    }
    return {text.substr(0, separator), text.substr(separator + 1)};
}

// The toolkit rewrites hexadecimal character references before parsing
// ("&#x42;" reads as a space), so text holding one is its to read; in UTF-8
// and in UTF-16 of either byte order.
constexpr std::string_view kHexReferences[] = {"&#x", std::string_view("&\0#\0x", 5)};
constexpr std::size_t kLongestReference = 5;

// The toolkit also turns DEL into a space, where expat keeps it.
constexpr char kDelete = '\x7F';

bool FindsQuirk(std::string_view text) {
    return text.find(kDelete) != std::string_view::npos ||
           std::any_of(std::begin(kHexReferences), std::end(kHexReferences),
                       [text](std::string_view reference) { return text.find(reference) != std::string_view::npos; });
}

// The packet guard refuses these, as the toolkit would write them back
// unescaped: the toolkit path gives that refusal.
bool IsUnwritable(const XML_Char* text) {
    return text != nullptr && std::strpbrk(text, "\"<&") != nullptr;
}

bool IsUtf8Name(std::string_view encoding) {
    return encoding.size() == 5 && (encoding[0] == 'U' || encoding[0] == 'u') &&
           (encoding[1] == 'T' || encoding[1] == 't') && (encoding[2] == 'F' || encoding[2] == 'f') &&
           encoding[3] == '-' && encoding[4] == '8';
}

}  // namespace

PacketParser::PacketParser(RdfWalk& walk) : m_walk(walk), m_parser(XML_ParserCreateNS(nullptr, kNameSeparator)) {
    if (m_parser == nullptr) {
        throw std::bad_alloc();
    }
    XML_SetUserData(m_parser, this);
    XML_SetElementHandler(m_parser, OnStart, OnEnd);
    XML_SetStartNamespaceDeclHandler(m_parser, OnNamespace);
    XML_SetCharacterDataHandler(m_parser, OnText);
    XML_SetCommentHandler(m_parser, OnComment);
    XML_SetProcessingInstructionHandler(m_parser, OnInstruction);
    XML_SetStartDoctypeDeclHandler(m_parser, OnDoctype);
    XML_SetXmlDeclHandler(m_parser, OnDeclaration);
}

PacketParser::~PacketParser() {
    XML_ParserFree(m_parser);
}

bool PacketParser::Feed(std::string_view text, bool isLast) {
    if (m_walk.GaveUp()) {
        return false;
    }
    m_bytes += text.size();
    if (m_bytes >= XMP_PacketLimits::kMaxPacketBytes) {
        m_walk.GiveUp();
        return false;
    }
    if (HoldsQuirk(text)) {
        m_walk.GiveUp();
        return false;
    }
    do {
        const std::size_t piece = std::min(text.size(), kPieceBytes);
        const bool last = isLast && piece == text.size();
        if (XML_Parse(m_parser, text.data(), static_cast<int>(piece), last ? 1 : 0) != XML_STATUS_OK) {
            m_walk.GiveUp();
            return false;
        }
        text.remove_prefix(piece);
    } while (!text.empty());
    return !m_walk.GaveUp();
}

// Searched across the pieces: the last bytes of the previous one are kept.
bool PacketParser::HoldsQuirk(std::string_view text) {
    constexpr std::size_t kKept = kLongestReference - 1;
    m_tail.append(text.substr(0, kKept));
    if (FindsQuirk(m_tail) || FindsQuirk(text)) {
        return true;
    }
    if (text.size() >= kKept) {
        m_tail.assign(text.substr(text.size() - kKept));
    } else if (m_tail.size() > kKept) {
        m_tail.erase(0, m_tail.size() - kKept);
    }
    return false;
}

void PacketParser::StopIfGaveUp() {
    if (m_walk.GaveUp()) {
        XML_StopParser(m_parser, XML_FALSE);
    }
}

void XMLCALL PacketParser::OnStart(void* self, const XML_Char* name, const XML_Char** attributes) {
    auto& parser = *static_cast<PacketParser*>(self);
    parser.m_attributeNames.clear();
    for (const XML_Char** attribute = attributes; *attribute != nullptr; attribute += 2) {
        parser.m_attributeNames.push_back(SplitName(*attribute));
        if (parser.m_attributeNames.back().local == "about" && IsUnwritable(attribute[1])) {
            parser.m_walk.GiveUp();
        }
    }
    if (!parser.m_walk.GaveUp()) {
        parser.m_walk.StartElement(SplitName(name), attributes, parser.m_attributeNames.data(),
                                   parser.m_attributeNames.size());
    }
    parser.StopIfGaveUp();
}

void XMLCALL PacketParser::OnNamespace(void* self, const XML_Char* /*prefix*/, const XML_Char* uri) {
    auto& parser = *static_cast<PacketParser*>(self);
    if (IsUnwritable(uri)) {
        parser.m_walk.GiveUp();
    }
    // Past the guard's limit the toolkit path refuses the packet.
    if (uri != nullptr && *uri != '\0') {
        parser.m_namespaces.emplace(uri);
        if (parser.m_namespaces.size() > XMP_PacketLimits::kMaxNamespaces) {
            parser.m_walk.GiveUp();
        }
    }
    parser.StopIfGaveUp();
}

void XMLCALL PacketParser::OnEnd(void* self, const XML_Char* /*name*/) {
    auto& parser = *static_cast<PacketParser*>(self);
    parser.m_walk.EndElement();
    parser.StopIfGaveUp();
}

void XMLCALL PacketParser::OnText(void* self, const XML_Char* text, int length) {
    auto& parser = *static_cast<PacketParser*>(self);
    parser.m_walk.Text(std::string_view(text, static_cast<std::size_t>(length)));
    parser.StopIfGaveUp();
}

void XMLCALL PacketParser::OnComment(void* self, const XML_Char* /*text*/) {
    auto& parser = *static_cast<PacketParser*>(self);
    parser.m_walk.Markup();
    parser.StopIfGaveUp();
}

void XMLCALL PacketParser::OnInstruction(void* self, const XML_Char* /*target*/, const XML_Char* /*data*/) {
    auto& parser = *static_cast<PacketParser*>(self);
    parser.m_walk.Markup();
    parser.StopIfGaveUp();
}

// The toolkit refuses a document type.
void XMLCALL PacketParser::OnDoctype(void* self, const XML_Char* /*name*/, const XML_Char* /*systemId*/,
                                     const XML_Char* /*publicId*/, int /*hasInternalSubset*/) {
    auto& parser = *static_cast<PacketParser*>(self);
    parser.m_walk.GiveUp();
    parser.StopIfGaveUp();
}

// Text the toolkit would read as UTF-8 whatever the declaration says.
void XMLCALL PacketParser::OnDeclaration(void* self, const XML_Char* /*version*/, const XML_Char* encoding,
                                         int /*standalone*/) {
    auto& parser = *static_cast<PacketParser*>(self);
    if (encoding != nullptr && !IsUtf8Name(encoding)) {
        parser.m_walk.GiveUp();
        parser.StopIfGaveUp();
    }
}

}  // namespace keltemporalxmp::streamread
