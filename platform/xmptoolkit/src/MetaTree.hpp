#pragma once
// The tree behind a TXMPMeta handle, and the operations the toolkit's C
// interface offers on it, with its quirks absorbed:
// - a null value makes the toolkit crash when it creates a struct or array,
//   so composite nodes are always created with "";
// - array items that are structs or arrays must be created with no value;
// - array forms are completed (alt-text is an alternative is an ordered array
//   is an array), which the toolkit insists on when creating arrays.

#include <exempi/xmp.h>

#include <memory>
#include <string>
#include <string_view>

#include <xmptoolkit/XMP_Const.hpp>

namespace xmptoolkit_detail {

// One toolkit object. Shared by a tree and by the iterators walking it: the
// toolkit's iterators read the object they were made on.
class XmpObject {
public:
    static std::shared_ptr<XmpObject> NewEmpty();
    explicit XmpObject(XmpPtr owned) : m_xmp(owned) {}
    ~XmpObject();
    XmpObject(const XmpObject&) = delete;
    XmpObject& operator=(const XmpObject&) = delete;

    XmpPtr Get() const { return m_xmp; }

private:
    XmpPtr m_xmp;
};

XMP_OptionBits CompleteArrayForm(XMP_OptionBits options);
void RequireNodeName(XMP_StringPtr schemaNS, XMP_StringPtr path, std::string_view operation);

class MetaTree {
public:
    MetaTree();
    explicit MetaTree(std::shared_ptr<XmpObject> object) : m_object(std::move(object)) {}

    XmpPtr Handle() const { return m_object->Get(); }
    std::shared_ptr<XmpObject> Object() const { return m_object; }

    // Packets and whole-tree operations.
    void Parse(XMP_StringPtr buffer, XMP_StringLen size);
    void Serialize(std::string* packet, XMP_OptionBits options, XMP_StringLen padding) const;
    std::shared_ptr<MetaTree> Clone() const;
    void Erase();

    // Any node, addressed by a path ("ns:arr[2]/ns:field/?xml:lang").
    bool GetProperty(std::string_view operation, XMP_StringPtr schemaNS, XMP_StringPtr path, std::string* value,
                     XMP_OptionBits* options) const;
    void SetProperty(std::string_view operation, XMP_StringPtr schemaNS, XMP_StringPtr path, XMP_StringPtr value,
                     XMP_OptionBits options);
    void DeleteProperty(std::string_view operation, XMP_StringPtr schemaNS, XMP_StringPtr path);
    bool HasProperty(std::string_view operation, XMP_StringPtr schemaNS, XMP_StringPtr path) const;

    XMP_Index CountArrayItems(XMP_StringPtr schemaNS, XMP_StringPtr arrayPath) const;
    void AppendArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayPath, XMP_OptionBits arrayOptions,
                         XMP_StringPtr value, XMP_OptionBits itemOptions);
    void SetArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayPath, XMP_Index index, XMP_StringPtr value,
                      XMP_OptionBits options);

    bool GetLocalizedText(XMP_StringPtr schemaNS, XMP_StringPtr altTextPath, XMP_StringPtr genericLang,
                          XMP_StringPtr specificLang, std::string* actualLang, std::string* value,
                          XMP_OptionBits* options) const;
    void SetLocalizedText(XMP_StringPtr schemaNS, XMP_StringPtr altTextPath, XMP_StringPtr genericLang,
                          XMP_StringPtr specificLang, XMP_StringPtr value, XMP_OptionBits options);

private:
    std::shared_ptr<XmpObject> m_object;
};

}  // namespace xmptoolkit_detail
