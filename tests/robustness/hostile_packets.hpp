#pragma once
// Packets built to hurt the toolkit: nesting, width and attributes at and
// past XMP_PacketLimits.

#include <cstdint>
#include <string>

namespace hostile {

inline const std::string kDc = "http://purl.org/dc/elements/1.1/";

// x:xmpmeta, rdf:RDF and rdf:Description: the levels around every property.
constexpr std::uint64_t kWrapperLevels = 3;

inline std::string Wrapped(const std::string& properties, const std::string& descriptionAttributes = "") {
    return "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'"
           " xmlns:dc='" +
           kDc + "'><rdf:Description rdf:about=''" + descriptionAttributes + ">" + properties +
           "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

inline std::string Repeated(const std::string& text, std::uint64_t count) {
    std::string out;
    out.reserve(text.size() * count);
    for (std::uint64_t i = 0; i < count; ++i) out += text;
    return out;
}

// Struct fields with distinct names.
inline std::string NamedSiblings(std::uint64_t count) {
    std::string fields;
    for (std::uint64_t i = 0; i < count; ++i)
        fields += "<dc:f" + std::to_string(i) + ">v</dc:f" + std::to_string(i) + ">";
    return Wrapped("<dc:s rdf:parseType='Resource'>" + fields + "</dc:s>");
}

// Top-level properties with distinct names, each in its own rdf:Description.
inline std::string PropertiesInSeparateDescriptions(std::uint64_t count) {
    std::string descriptions;
    for (std::uint64_t i = 0; i < count; ++i)
        descriptions += "</rdf:Description><rdf:Description rdf:about=''><dc:p" + std::to_string(i) + ">v</dc:p" +
                        std::to_string(i) + ">";
    return Wrapped(descriptions);
}

inline std::string ArrayItems(std::uint64_t count) {
    return Wrapped("<dc:subject><rdf:Bag>" + Repeated("<rdf:li>k</rdf:li>", count) + "</rdf:Bag></dc:subject>");
}

inline std::string Attributes(std::uint64_t count) {
    std::string attributes;
    for (std::uint64_t i = 0; i < count; ++i) attributes += " dc:a" + std::to_string(i) + "='v'";
    return Wrapped("", attributes);
}

// Attributes on an empty root element: expat still reports its end after a refusal.
inline std::string AttributesOfAnEmptyRoot(std::uint64_t count) {
    std::string attributes;
    for (std::uint64_t i = 0; i < count; ++i) attributes += " a" + std::to_string(i) + "='v'";
    return "<x:xmpmeta xmlns:x='adobe:ns:meta/'" + attributes + "/>";
}

// Properties each in a namespace of its own, declared on the property; with
// `distinct` false they all share one URI, as some writers repeat it.
inline std::string NamespacedProperties(std::uint64_t count, bool distinct = true) {
    std::string properties;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::string prefix = "n" + std::to_string(i);
        const std::string uri = "http://example.com/" + (distinct ? std::to_string(i) : std::string("same")) + "/";
        const std::string name = prefix + ":p" + std::to_string(i);
        properties += "<" + name + " xmlns:" + prefix + "='" + uri + "'>v</" + name + ">";
    }
    return Wrapped(properties);
}

}  // namespace hostile
