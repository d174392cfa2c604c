#include "Namespaces.hpp"

#include "ToolkitCall.hpp"
#include "XmpText.hpp"

namespace xmptoolkit_detail {

bool RegisterNamespace(XMP_StringPtr namespaceURI, XMP_StringPtr suggestedPrefix, std::string* registeredPrefix) {
    constexpr std::string_view kOperation = "RegisterNamespace";
    RequireArgument(namespaceURI, kOperation, "namespace URI");
    RequireArgument(suggestedPrefix, kOperation, "suggested prefix");
    XmpText prefix;
    const bool asSuggested = FoundUnlessFailed(
        CallToolkit([&] { return xmp_register_namespace(namespaceURI, suggestedPrefix, prefix.Get()); }),
        kOperation, namespaceURI);
    prefix.CopyTo(registeredPrefix);
    return asSuggested;
}

bool NamespacePrefix(XMP_StringPtr namespaceURI, std::string* prefix) {
    constexpr std::string_view kOperation = "GetNamespacePrefix";
    RequireArgument(namespaceURI, kOperation, "namespace URI");
    XmpText text;
    const bool found = FoundUnlessFailed(
        CallToolkit([&] { return xmp_namespace_prefix(namespaceURI, text.Get()); }), kOperation, namespaceURI);
    if (found) {
        text.CopyTo(prefix);
    }
    return found;
}

bool NamespaceURI(XMP_StringPtr prefix, std::string* namespaceURI) {
    constexpr std::string_view kOperation = "GetNamespaceURI";
    RequireArgument(prefix, kOperation, "namespace prefix");
    XmpText text;
    const bool found = FoundUnlessFailed(
        CallToolkit([&] { return xmp_prefix_namespace_uri(prefix, text.Get()); }), kOperation, prefix);
    if (found) {
        text.CopyTo(namespaceURI);
    }
    return found;
}

}  // namespace xmptoolkit_detail
