#include <string>

#include "MetaTree.hpp"
#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {
namespace {

// Struct and array items must be created without a value; the toolkit
// refuses "" for them.
XMP_StringPtr ItemValue(XMP_StringPtr value, XMP_OptionBits itemOptions) {
    if ((itemOptions & kXMP_PropCompositeMask) != 0 && (value == nullptr || *value == '\0')) {
        return nullptr;
    }
    return value == nullptr ? "" : value;
}

}  // namespace

// The toolkit has no item count. Item lookup by index is direct, so the count
// is found by doubling and then halving the index: O(log n) lookups.
XMP_Index MetaTree::CountArrayItems(XMP_StringPtr schemaNS, XMP_StringPtr arrayPath) const {
    constexpr std::string_view kOperation = "CountArrayItems";
    XMP_OptionBits options = 0;
    if (!GetProperty(kOperation, schemaNS, arrayPath, nullptr, &options)) {
        return 0;
    }
    if ((options & kXMP_PropValueIsArray) == 0) {
        RaiseError(kXMPErr_BadXPath, kOperation, arrayPath, "the property is not an array");
    }
    const std::string base(arrayPath);
    const auto hasItem = [&](XMP_Index index) {
        return HasProperty(kOperation, schemaNS, (base + '[' + std::to_string(index) + ']').c_str());
    };
    XMP_Index present = 0;
    XMP_Index absent = 1;
    while (hasItem(absent)) {
        present = absent;
        absent *= 2;
    }
    while (absent - present > 1) {
        const XMP_Index middle = present + (absent - present) / 2;
        (hasItem(middle) ? present : absent) = middle;
    }
    return present;
}

void MetaTree::AppendArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayPath, XMP_OptionBits arrayOptions,
                               XMP_StringPtr value, XMP_OptionBits itemOptions) {
    constexpr std::string_view kOperation = "AppendArrayItem";
    RequireNodeName(schemaNS, arrayPath, kOperation);
    arrayOptions = CompleteArrayForm(arrayOptions);
    itemOptions = CompleteArrayForm(itemOptions);
    XMP_StringPtr given = ItemValue(value, itemOptions);
    RequireSuccess(CallToolkit([&] {
                       return xmp_append_array_item(Handle(), schemaNS, arrayPath, arrayOptions, given, itemOptions);
                   }),
                   kOperation, arrayPath);
}

void MetaTree::SetArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayPath, XMP_Index index, XMP_StringPtr value,
                            XMP_OptionBits options) {
    constexpr std::string_view kOperation = "SetArrayItem";
    RequireNodeName(schemaNS, arrayPath, kOperation);
    options = CompleteArrayForm(options);
    XMP_StringPtr given = ItemValue(value, options);
    const std::string itemPath = std::string(arrayPath) + '[' + std::to_string(index) + ']';
    RequireSuccess(
        CallToolkit([&] { return xmp_set_array_item(Handle(), schemaNS, arrayPath, index, given, options); }),
        kOperation, itemPath);
}

}  // namespace xmptoolkit_detail
