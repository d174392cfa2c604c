#include "PathComposition.hpp"

#include <string_view>

#include "MetaTree.hpp"
#include "Namespaces.hpp"
#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {
namespace {

// "prefix:name" for a name in a namespace; a name that already carries the
// namespace's own prefix is taken as it is.
std::string QualifiedName(XMP_StringPtr nameNS, XMP_StringPtr name, std::string_view operation) {
    RequireArgument(nameNS, operation, "namespace URI");
    RequireArgument(name, operation, "name");
    std::string prefix;
    if (!NamespacePrefix(nameNS, &prefix)) {
        RaiseError(kXMPErr_BadSchema, operation, name, std::string("unregistered namespace ") + nameNS);
    }
    const std::string_view given(name);
    if (given.empty() || given.find_first_of("/[]?*") != std::string_view::npos) {
        RaiseError(kXMPErr_BadXPath, operation, name, "not a simple name");
    }
    const std::size_t colon = given.find(':');
    if (colon == std::string_view::npos) {
        return prefix + name;
    }
    if (given.substr(0, colon + 1) != prefix) {
        RaiseError(kXMPErr_BadXPath, operation, name, "prefix does not match namespace " + std::string(nameNS));
    }
    return std::string(given);
}

}  // namespace

std::string ArrayItemPath(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex) {
    constexpr std::string_view kOperation = "ComposeArrayItemPath";
    RequireNodeName(schemaNS, arrayName, kOperation);
    if (itemIndex < 0 && itemIndex != kXMP_ArrayLastItem) {
        RaiseError(kXMPErr_BadParam, kOperation, arrayName, "array index out of bounds");
    }
    return std::string(arrayName) + '[' + (itemIndex == kXMP_ArrayLastItem ? "last()" : std::to_string(itemIndex)) +
           ']';
}

std::string StructFieldPath(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                            XMP_StringPtr fieldName) {
    constexpr std::string_view kOperation = "ComposeStructFieldPath";
    RequireNodeName(schemaNS, structName, kOperation);
    return std::string(structName) + '/' + QualifiedName(fieldNS, fieldName, kOperation);
}

std::string QualifierPath(XMP_StringPtr schemaNS, XMP_StringPtr propName, XMP_StringPtr qualNS,
                          XMP_StringPtr qualName) {
    constexpr std::string_view kOperation = "ComposeQualifierPath";
    RequireNodeName(schemaNS, propName, kOperation);
    return std::string(propName) + "/?" + QualifiedName(qualNS, qualName, kOperation);
}

}  // namespace xmptoolkit_detail
