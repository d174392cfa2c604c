#include "MetaTree.hpp"
#include "ToolkitCall.hpp"
#include "XmpText.hpp"

namespace xmptoolkit_detail {

XMP_OptionBits CompleteArrayForm(XMP_OptionBits options) {
    if ((options & kXMP_PropArrayIsAltText) != 0) {
        options |= kXMP_PropArrayIsAlternate;
    }
    if ((options & kXMP_PropArrayIsAlternate) != 0) {
        options |= kXMP_PropArrayIsOrdered;
    }
    if ((options & kXMP_PropArrayIsOrdered) != 0) {
        options |= kXMP_PropValueIsArray;
    }
    return options;
}

void RequireNodeName(XMP_StringPtr schemaNS, XMP_StringPtr path, std::string_view operation) {
    RequireArgument(schemaNS, operation, "schema namespace");
    RequireArgument(path, operation, "property path");
}

bool MetaTree::GetProperty(std::string_view operation, XMP_StringPtr schemaNS, XMP_StringPtr path, std::string* value,
                           XMP_OptionBits* options) const {
    RequireNodeName(schemaNS, path, operation);
    XmpText text;
    uint32_t bits = 0;
    const bool found = FoundUnlessFailed(
        CallToolkit([&] { return xmp_get_property(Handle(), schemaNS, path, text.Get(), &bits); }), operation, path);
    if (found) {
        text.CopyTo(value);
        if (options != nullptr) {
            *options = bits;
        }
    }
    return found;
}

void MetaTree::SetProperty(std::string_view operation, XMP_StringPtr schemaNS, XMP_StringPtr path, XMP_StringPtr value,
                           XMP_OptionBits options) {
    RequireNodeName(schemaNS, path, operation);
    options = CompleteArrayForm(options);
    XMP_StringPtr given = value == nullptr ? "" : value;
    RequireSuccess(CallToolkit([&] { return xmp_set_property(Handle(), schemaNS, path, given, options); }), operation,
                   path);
}

void MetaTree::DeleteProperty(std::string_view operation, XMP_StringPtr schemaNS, XMP_StringPtr path) {
    RequireNodeName(schemaNS, path, operation);
    RequireSuccess(CallToolkit([&] { return xmp_delete_property(Handle(), schemaNS, path); }), operation, path);
}

bool MetaTree::HasProperty(std::string_view operation, XMP_StringPtr schemaNS, XMP_StringPtr path) const {
    RequireNodeName(schemaNS, path, operation);
    return FoundUnlessFailed(CallToolkit([&] { return xmp_has_property(Handle(), schemaNS, path); }), operation, path);
}

}  // namespace xmptoolkit_detail
