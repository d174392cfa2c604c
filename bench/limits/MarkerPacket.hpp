#pragma once
// A packet of n markers (5 types, a name, a comment, two cue points each, as a
// logging tool writes them), written as text so that making it costs no
// toolkit memory.

#include <cstdint>
#include <string>

namespace keltemporalxmp::bench {

inline const char* const kTypes[] = {"Chapter", "Comment", "Cue", "Speech", "WebLink"};
inline constexpr std::int64_t kTypeCount = sizeof kTypes / sizeof kTypes[0];

inline std::string MarkerPacket(std::int64_t count) {
    std::string packet =
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
        "<rdf:Description rdf:about=\"\" xmlns:xmpDM=\"http://ns.adobe.com/xmp/1.0/DynamicMedia/\">"
        "<xmpDM:Tracks><rdf:Bag>";
    for (std::int64_t type = 0; type < kTypeCount; ++type) {
        packet += "<rdf:li rdf:parseType=\"Resource\"><xmpDM:trackName>";
        packet += kTypes[type];
        packet += "</xmpDM:trackName><xmpDM:frameRate>f25</xmpDM:frameRate><xmpDM:markers><rdf:Seq>";
        for (std::int64_t i = type; i < count; i += kTypeCount) {
            const std::string number = std::to_string(i);
            packet += "<rdf:li rdf:parseType=\"Resource\"><xmpDM:startTime>" + std::to_string(i * 3) +
                      "</xmpDM:startTime><xmpDM:duration>25</xmpDM:duration><xmpDM:name>Marker " + number +
                      "</xmpDM:name><xmpDM:comment>A comment on marker " + number +
                      "</xmpDM:comment><xmpDM:cuePointParams><rdf:Seq>"
                      "<rdf:li "
                      "rdf:parseType=\"Resource\"><xmpDM:key>speaker</xmpDM:key><xmpDM:value>Ann</xmpDM:value></rdf:li>"
                      "<rdf:li rdf:parseType=\"Resource\"><xmpDM:key>scene</xmpDM:key><xmpDM:value>Scene " +
                      number + "</xmpDM:value></rdf:li></rdf:Seq></xmpDM:cuePointParams></rdf:li>";
        }
        packet += "</rdf:Seq></xmpDM:markers></rdf:li>";
    }
    packet += "</rdf:Bag></xmpDM:Tracks></rdf:Description></rdf:RDF></x:xmpmeta>";
    return packet;
}

}  // namespace keltemporalxmp::bench
