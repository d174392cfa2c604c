#pragma once
// Packets shared by the XMP layer tests.

#include <string>

#include <xmptoolkit/XMP.hpp>

namespace xmp_test {

inline const std::string kRdfOpen =
    "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'"
    " xmlns:dc='http://purl.org/dc/elements/1.1/' xmlns:xmpDM='http://ns.adobe.com/xmp/1.0/DynamicMedia/'>";
inline const std::string kRdfClose = "</rdf:RDF>";

inline std::string Wrapped(const std::string& descriptions) {
    return "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + kRdfOpen + descriptions + kRdfClose + "</x:xmpmeta>";
}

inline SXMPMeta Parsed(const std::string& packet) {
    return SXMPMeta(packet.data(), static_cast<XMP_StringLen>(packet.size()));
}

inline std::string Serialized(const SXMPMeta& meta) {
    std::string packet;
    meta.SerializeToBuffer(&packet, kXMP_OmitPacketWrapper | kXMP_UseCompactFormat);
    return packet;
}

inline std::string Value(const SXMPMeta& meta, XMP_StringPtr schemaNS, const std::string& path) {
    std::string value;
    meta.GetProperty(schemaNS, path.c_str(), &value, nullptr);
    return value;
}

// A track list of `count` markers, each a struct with a name and an alt-text comment.
inline void AddMarkers(SXMPMeta* meta, int count) {
    meta->SetProperty(kXMP_NS_DM, "Tracks", "", kXMP_PropArrayIsUnordered);
    meta->AppendArrayItem(kXMP_NS_DM, "Tracks", 0, nullptr, kXMP_PropValueIsStruct);
    meta->SetProperty(kXMP_NS_DM, "Tracks[1]/xmpDM:markers", "", kXMP_PropArrayIsOrdered);
    for (int i = 1; i <= count; ++i) {
        meta->AppendArrayItem(kXMP_NS_DM, "Tracks[1]/xmpDM:markers", 0, nullptr, kXMP_PropValueIsStruct);
        const std::string item = "Tracks[1]/xmpDM:markers[" + std::to_string(i) + "]";
        meta->SetProperty(kXMP_NS_DM, (item + "/xmpDM:name").c_str(), ("m" + std::to_string(i)).c_str());
    }
}

}  // namespace xmp_test
