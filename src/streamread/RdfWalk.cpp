#include "streamread/RdfWalk.hpp"

#include <algorithm>
#include <functional>

#include <xmptoolkit/XMP_PacketLimits.hpp>

namespace keltemporalxmp::streamread {
namespace {

constexpr std::string_view kRdfNS = "http://www.w3.org/1999/02/22-rdf-syntax-ns#";
constexpr std::string_view kXmlNS = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kMetaNS = "adobe:ns:meta/";

// The schemas whose names the readers here need, with the prefixes the
// toolkit's paths give them.
struct NamedSchema {
    std::string_view uri;
    std::string_view prefix;
};
constexpr NamedSchema kNamedSchemas[] = {
    {kXMP_NS_DM, "xmpDM:"},
    {kXMP_NS_XMP_MM, "xmpMM:"},
    {kXMP_NS_XMP_ResourceRef, "stRef:"},
};

bool IsRdf(const XmlName& name, std::string_view local) {
    return name.uri == kRdfNS && name.local == local;
}

bool IsWhitespace(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
}

// Equal hashes of different names only make the reader give up, never err.
std::uint64_t NameHash(const XmlName& name) {
    const std::hash<std::string_view> hash;
    return hash(name.uri) * 0x9E3779B97F4A7C15ULL ^ hash(name.local);
}

// Nodes an element may hold before the toolkit's guard refuses the packet;
// reaching one hands the packet over.
bool PastChildLimit(std::uint64_t count, bool isItem) {
    return count >= (isItem ? XMP_PacketLimits::kMaxChildren : XMP_PacketLimits::kMaxNamedChildren);
}

}  // namespace

RdfWalk::RdfWalk(NodeSink& sink) : m_sink(sink) {
    // Never reallocated, so frames can be held by reference while others are pushed.
    m_frames.resize(XMP_PacketLimits::kMaxNestingDepth + 1);
}

RdfWalk::Frame* RdfWalk::Parent() {
    return m_open > 0 ? &m_frames[m_open - 1] : nullptr;
}

RdfWalk::Frame& RdfWalk::Push(Role role) {
    Frame& frame = m_frames[m_open++];
    frame.role = role;
    frame.shape = Shape::kOpen;
    frame.sendsNode = false;
    frame.wantsChildren = false;
    frame.hasText = false;
    frame.depth = 0;
    frame.firstField = m_fieldNames.size();
    frame.namedChildren = 0;
    frame.items = 0;
    frame.text.clear();
    frame.nodeName.clear();
    return frame;
}

void RdfWalk::StartElement(const XmlName& name, const char** attributes, const XmlName* names, std::size_t count) {
    if (m_gaveUp) {
        return;
    }
    if (m_open >= XMP_PacketLimits::kMaxNestingDepth || count >= XMP_PacketLimits::kMaxAttributes) {
        GiveUp();
        return;
    }
    Frame* parent = Parent();
    if (parent == nullptr) {
        if (name.uri == kMetaNS && name.local == "xmpmeta") {
            Push(Role::kWrapper);
        } else {
            StartInRdf(name, attributes, names, count);
        }
        return;
    }
    switch (parent->role) {
        case Role::kWrapper:
            StartInRdf(name, attributes, names, count);
            return;
        case Role::kRdf:
            if (!IsRdf(name, "Description")) {
                GiveUp();
                return;
            }
            StartTopDescription(attributes, names, count);
            return;
        case Role::kTopDescription:
        case Role::kNode:
            StartProperty(*parent, name, false, attributes, names, count);
            return;
        case Role::kContainer:
            if (!IsRdf(name, "li")) {
                GiveUp();
                return;
            }
            StartProperty(*parent, name, true, attributes, names, count);
            return;
        case Role::kProperty:
            StartInProperty(*parent, name, attributes, names, count);
            return;
        case Role::kOutside:
            GiveUp();
            return;
    }
}

// The one rdf:RDF, bare or in the xmpmeta wrapper.
void RdfWalk::StartInRdf(const XmlName& name, const char** /*attributes*/, const XmlName* /*names*/,
                         std::size_t count) {
    if (!IsRdf(name, "RDF") || m_sawRdf || count != 0) {
        GiveUp();
        return;
    }
    m_sawRdf = true;
    Push(Role::kRdf);
}

void RdfWalk::StartTopDescription(const char** attributes, const XmlName* names, std::size_t count) {
    Frame& description = Push(Role::kTopDescription);
    for (std::size_t i = 0; i < count && !m_gaveUp; ++i) {
        const XmlName& name = names[i];
        const std::string_view value = attributes[2 * i + 1];
        if (IsRdf(name, "about")) {
            // Descriptions of one packet must describe the same resource.
            if (m_sawAbout && value != m_about) {
                GiveUp();
            }
            m_sawAbout = true;
            m_about = value;
        } else if (name.uri.empty() || name.uri == kRdfNS || name.uri == kXmlNS) {
            GiveUp();
        } else if (!CountChild(description, false) || !AddTopLevelName(name)) {
            GiveUp();
        } else {
            NodeName(name, m_nodeName);
            m_attributeValue.assign(value);
            Send(true, 0, m_nodeName, 0, m_attributeValue);
        }
    }
}

bool RdfWalk::CountChild(Frame& parent, bool isItem) {
    std::uint64_t& count = isItem ? parent.items : parent.namedChildren;
    if (PastChildLimit(++count, isItem)) {
        GiveUp();
        return false;
    }
    return true;
}

bool RdfWalk::AddTopLevelName(const XmlName& name) {
    if (!m_topLevelNames.insert(NameHash(name)).second) {
        GiveUp();  // given twice: the toolkit refuses the packet
        return false;
    }
    return true;
}

bool RdfWalk::AddFieldName(const Frame& structFrame, const XmlName& name) {
    const std::uint64_t hash = NameHash(name);
    const auto first = m_fieldNames.begin() + static_cast<std::ptrdiff_t>(structFrame.firstField);
    if (std::find(first, m_fieldNames.end(), hash) != m_fieldNames.end()) {
        GiveUp();
        return false;
    }
    m_fieldNames.push_back(hash);
    return true;
}

// The name the toolkit's paths give a field; other schemas' fields are never
// read, so they need none.
void RdfWalk::NodeName(const XmlName& name, std::string& nodeName) {
    nodeName.clear();
    for (const NamedSchema& schema : kNamedSchemas) {
        if (name.uri == schema.uri) {
            nodeName.append(schema.prefix).append(name.local);
            return;
        }
    }
}

bool RdfWalk::Send(bool sends, int depth, std::string_view nodeName, XMP_OptionBits options, std::string& value) {
    return sends && m_sink.Take({depth, nodeName, options}, value);
}

void RdfWalk::SendShape(Frame& frame, XMP_OptionBits options, std::string& value) {
    frame.wantsChildren = Send(frame.sendsNode, frame.depth, frame.nodeName, options, value);
}

void RdfWalk::StartProperty(Frame& parent, const XmlName& name, bool isItem, const char** attributes,
                            const XmlName* names, std::size_t count) {
    if (!isItem && (name.uri.empty() || name.uri == kRdfNS || name.uri == kXmlNS)) {
        GiveUp();
        return;
    }
    if (!CountChild(parent, isItem)) {
        return;
    }
    if (parent.role == Role::kTopDescription) {
        if (!AddTopLevelName(name)) {
            return;
        }
    } else if (!isItem && !AddFieldName(parent, name)) {
        return;
    }
    Frame& property = Push(Role::kProperty);
    const bool atTop = parent.role == Role::kTopDescription;
    property.sendsNode = atTop || parent.wantsChildren;
    property.depth = atTop ? 0 : parent.depth + 1;
    if (property.sendsNode && !isItem) {
        NodeName(name, property.nodeName);
    }

    bool isResource = false;
    std::size_t fields = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const XmlName& attribute = names[i];
        if (attribute.uri == kXmlNS && attribute.local == "lang") {
            continue;  // a qualifier: the reader leaves qualifiers out
        }
        if (IsRdf(attribute, "parseType") && std::string_view(attributes[2 * i + 1]) == "Resource") {
            isResource = true;
        } else if (attribute.uri.empty() || attribute.uri == kRdfNS || attribute.uri == kXmlNS) {
            GiveUp();
            return;
        } else {
            ++fields;
        }
    }
    if (isResource && fields != 0) {
        GiveUp();
        return;
    }
    if (isResource) {
        property.shape = Shape::kStruct;
        SendShape(property, kXMP_PropValueIsStruct, m_noValue);
    } else if (fields != 0) {
        // An empty element whose attributes are the fields of a struct.
        property.shape = Shape::kAttributeStruct;
        SendShape(property, kXMP_PropValueIsStruct, m_noValue);
        AddAttributeFields(property, attributes, names, count);
    }
}

void RdfWalk::AddAttributeFields(Frame& structFrame, const char** attributes, const XmlName* names, std::size_t count) {
    for (std::size_t i = 0; i < count && !m_gaveUp; ++i) {
        const XmlName& name = names[i];
        if (name.uri == kXmlNS && name.local == "lang") {
            continue;
        }
        if (name.uri.empty() || name.uri == kRdfNS || name.uri == kXmlNS) {
            GiveUp();
            return;
        }
        if (!CountChild(structFrame, false) || !AddFieldName(structFrame, name)) {
            return;
        }
        if (structFrame.wantsChildren) {
            NodeName(name, m_nodeName);
            m_attributeValue.assign(attributes[2 * i + 1]);
            Send(true, structFrame.depth + 1, m_nodeName, 0, m_attributeValue);
        }
    }
}

void RdfWalk::StartInProperty(Frame& property, const XmlName& name, const char** attributes, const XmlName* names,
                              std::size_t count) {
    if (property.shape == Shape::kStruct) {
        StartProperty(property, name, false, attributes, names, count);
        return;
    }
    if (property.shape != Shape::kOpen || property.hasText) {
        GiveUp();  // a second value, or text beside one
        return;
    }
    if (IsRdf(name, "Description")) {
        property.shape = Shape::kNodeStruct;
        SendShape(property, kXMP_PropValueIsStruct, m_noValue);
        Frame& node = Push(Role::kNode);
        node.depth = property.depth;
        node.wantsChildren = property.wantsChildren;
        for (std::size_t i = 0; i < count; ++i) {
            if (names[i].uri == kRdfNS || names[i].uri == kXmlNS) {
                GiveUp();
                return;
            }
        }
        AddAttributeFields(node, attributes, names, count);
        return;
    }
    XMP_OptionBits form = 0;
    if (IsRdf(name, "Bag")) {
        form = kXMP_PropValueIsArray;
    } else if (IsRdf(name, "Seq")) {
        form = kXMP_PropValueIsArray | kXMP_PropArrayIsOrdered;
    } else if (IsRdf(name, "Alt")) {
        form = kXMP_PropValueIsArray | kXMP_PropArrayIsOrdered | kXMP_PropArrayIsAlternate;
    }
    if (form == 0 || count != 0) {
        GiveUp();
        return;
    }
    property.shape = Shape::kArray;
    SendShape(property, form, m_noValue);
    if (property.wantsChildren && (form & kXMP_PropArrayIsAlternate) != 0) {
        // The toolkit reorders language alternatives: read only where nothing is taken.
        GiveUp();
        return;
    }
    Frame& container = Push(Role::kContainer);
    container.depth = property.depth;
    container.wantsChildren = property.wantsChildren;
}

void RdfWalk::Text(std::string_view text) {
    if (m_gaveUp || m_open == 0) {
        return;
    }
    Frame& frame = m_frames[m_open - 1];
    if (frame.role == Role::kProperty && frame.shape == Shape::kOpen) {
        if (frame.sendsNode) {
            frame.text.append(text);
        }
        frame.hasText = frame.hasText || !IsWhitespace(text);
    } else if (!IsWhitespace(text)) {
        GiveUp();
    }
}

void RdfWalk::Markup() {
    if (m_open > 0 && m_frames[m_open - 1].role != Role::kWrapper) {
        GiveUp();
    }
}

void RdfWalk::EndElement() {
    if (m_gaveUp || m_open == 0) {
        return;
    }
    Frame& frame = m_frames[m_open - 1];
    if (frame.role == Role::kProperty && frame.shape == Shape::kOpen) {
        SendShape(frame, 0, frame.text);
    }
    if (frame.role == Role::kProperty || frame.role == Role::kNode) {
        m_fieldNames.resize(frame.firstField);
    }
    --m_open;
}

void RdfWalk::Finish() {
    if (m_gaveUp) {
        return;
    }
    if (!m_sawRdf || m_open != 0) {
        GiveUp();
        return;
    }
}

}  // namespace keltemporalxmp::streamread
