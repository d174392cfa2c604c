#include "PacketText.hpp"

namespace xmptoolkit_detail {
namespace {

constexpr std::string_view kWrapperOpen = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">";
constexpr std::string_view kWrapperClose = "</x:xmpmeta>";

// Position of the first element's '<', past white space, processing
// instructions (the xpacket header), comments and a document type.
std::size_t FirstElementStart(std::string_view packet) {
    std::size_t at = 0;
    while (at < packet.size()) {
        const std::size_t open = packet.find('<', at);
        if (open == std::string_view::npos || open + 1 >= packet.size()) {
            return std::string_view::npos;
        }
        const std::string_view rest = packet.substr(open);
        std::string_view closer;
        if (rest.starts_with("<?")) {
            closer = "?>";
        } else if (rest.starts_with("<!--")) {
            closer = "-->";
        } else if (rest.starts_with("<!")) {
            closer = ">";
        } else {
            return open;
        }
        const std::size_t end = packet.find(closer, open + 2);
        if (end == std::string_view::npos) {
            return std::string_view::npos;
        }
        at = end + closer.size();
    }
    return std::string_view::npos;
}

bool IsBareRdf(std::string_view packet, std::size_t elementStart) {
    const std::string_view tag = packet.substr(elementStart + 1);
    const std::size_t nameEnd = tag.find_first_of(" \t\r\n/>");
    const std::string_view name = tag.substr(0, nameEnd);
    return name == "RDF" || name.ends_with(":RDF");
}

}  // namespace

std::string WithXmpMetaWrapper(std::string_view packet) {
    const std::size_t elementStart = FirstElementStart(packet);
    if (elementStart == std::string_view::npos || !IsBareRdf(packet, elementStart)) {
        return std::string(packet);
    }
    std::string wrapped;
    wrapped.reserve(packet.size() + kWrapperOpen.size() + kWrapperClose.size());
    wrapped.append(packet.substr(0, elementStart)).append(kWrapperOpen);
    wrapped.append(packet.substr(elementStart)).append(kWrapperClose);
    return wrapped;
}

}  // namespace xmptoolkit_detail
