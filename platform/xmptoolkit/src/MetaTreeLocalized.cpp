#include "MetaTree.hpp"
#include "ToolkitCall.hpp"
#include "XmpText.hpp"

namespace xmptoolkit_detail {

bool MetaTree::GetLocalizedText(XMP_StringPtr schemaNS, XMP_StringPtr altTextPath, XMP_StringPtr genericLang,
                                XMP_StringPtr specificLang, std::string* actualLang, std::string* value,
                                XMP_OptionBits* options) const {
    constexpr std::string_view kOperation = "GetLocalizedText";
    RequireNodeName(schemaNS, altTextPath, kOperation);
    RequireArgument(specificLang, kOperation, "specific language");
    XmpText lang;
    XmpText text;
    uint32_t bits = 0;
    const bool found = FoundUnlessFailed(CallToolkit([&] {
                                             return xmp_get_localized_text(Handle(), schemaNS, altTextPath,
                                                                           genericLang == nullptr ? "" : genericLang,
                                                                           specificLang, lang.Get(), text.Get(), &bits);
                                         }),
                                         kOperation, altTextPath);
    if (found) {
        lang.CopyTo(actualLang);
        text.CopyTo(value);
        if (options != nullptr) {
            *options = bits;
        }
    }
    return found;
}

void MetaTree::SetLocalizedText(XMP_StringPtr schemaNS, XMP_StringPtr altTextPath, XMP_StringPtr genericLang,
                                XMP_StringPtr specificLang, XMP_StringPtr value, XMP_OptionBits options) {
    constexpr std::string_view kOperation = "SetLocalizedText";
    RequireNodeName(schemaNS, altTextPath, kOperation);
    RequireArgument(specificLang, kOperation, "specific language");
    RequireSuccess(CallToolkit([&] {
                       return xmp_set_localized_text(Handle(), schemaNS, altTextPath,
                                                     genericLang == nullptr ? "" : genericLang, specificLang,
                                                     value == nullptr ? "" : value, options);
                   }),
                   kOperation, altTextPath);
}

}  // namespace xmptoolkit_detail
