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
        CallToolkit([&] { return xmp_register_namespace(namespaceURI, suggestedPrefix, prefix.Get()); }), kOperation,
        namespaceURI);
    prefix.CopyTo(registeredPrefix);
    return asSuggested;
}

namespace {

// One registry lookup: a name for a key, or false.
template <class Lookup>
bool LookUpName(std::string_view operation, XMP_StringPtr key, std::string_view keyName, std::string* name,
                Lookup lookup) {
    RequireArgument(key, operation, keyName);
    XmpText text;
    const bool found = FoundUnlessFailed(CallToolkit([&] { return lookup(key, text.Get()); }), operation, key);
    if (found) {
        text.CopyTo(name);
    }
    return found;
}

}  // namespace

bool NamespacePrefix(XMP_StringPtr namespaceURI, std::string* prefix) {
    return LookUpName("GetNamespacePrefix", namespaceURI, "namespace URI", prefix, xmp_namespace_prefix);
}

bool NamespaceURI(XMP_StringPtr prefix, std::string* namespaceURI) {
    return LookUpName("GetNamespaceURI", prefix, "namespace prefix", namespaceURI, xmp_prefix_namespace_uri);
}

}  // namespace xmptoolkit_detail
