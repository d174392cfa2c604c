#include <xmptoolkit/TXMPMeta.hpp>

#include "MetaTree.hpp"
#include "Namespaces.hpp"
#include "PathComposition.hpp"

using xmptoolkit_detail::MetaTree;

template <class tStringObj>
TXMPMeta<tStringObj>::TXMPMeta() : m_tree(std::make_shared<MetaTree>()) {}

template <class tStringObj>
TXMPMeta<tStringObj>::TXMPMeta(XMP_StringPtr buffer, XMP_StringLen size) : TXMPMeta() {
    m_tree->Parse(buffer, size);
}

template <class tStringObj>
TXMPMeta<tStringObj>::TXMPMeta(std::shared_ptr<MetaTree> tree) : m_tree(std::move(tree)) {}

template <class tStringObj>
TXMPMeta<tStringObj>::TXMPMeta(const TXMPMeta& original) = default;

template <class tStringObj>
TXMPMeta<tStringObj>& TXMPMeta<tStringObj>::operator=(const TXMPMeta& rhs) = default;

template <class tStringObj>
TXMPMeta<tStringObj>::~TXMPMeta() = default;

template <class tStringObj>
TXMPMeta<tStringObj> TXMPMeta<tStringObj>::Clone(XMP_OptionBits /*options*/) const {
    return TXMPMeta(m_tree->Clone());
}

template <class tStringObj>
void TXMPMeta<tStringObj>::ParseFromBuffer(XMP_StringPtr buffer, XMP_StringLen size, XMP_OptionBits /*options*/) {
    m_tree->Parse(buffer, size);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::SerializeToBuffer(tStringObj* packet, XMP_OptionBits options, XMP_StringLen padding) const {
    m_tree->Serialize(packet, options, padding);
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::GetProperty(XMP_StringPtr schemaNS, XMP_StringPtr propName, tStringObj* propValue,
                                       XMP_OptionBits* options) const {
    return m_tree->GetProperty("GetProperty", schemaNS, propName, propValue, options);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::SetProperty(XMP_StringPtr schemaNS, XMP_StringPtr propName, XMP_StringPtr propValue,
                                       XMP_OptionBits options) {
    m_tree->SetProperty("SetProperty", schemaNS, propName, propValue, options);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::DeleteProperty(XMP_StringPtr schemaNS, XMP_StringPtr propName) {
    m_tree->DeleteProperty("DeleteProperty", schemaNS, propName);
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::DoesPropertyExist(XMP_StringPtr schemaNS, XMP_StringPtr propName) const {
    return m_tree->HasProperty("DoesPropertyExist", schemaNS, propName);
}

template <class tStringObj>
XMP_Index TXMPMeta<tStringObj>::CountArrayItems(XMP_StringPtr schemaNS, XMP_StringPtr arrayName) const {
    return m_tree->CountArrayItems(schemaNS, arrayName);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::AppendArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_OptionBits arrayOptions,
                                           XMP_StringPtr itemValue, XMP_OptionBits itemOptions) {
    m_tree->AppendArrayItem(schemaNS, arrayName, arrayOptions, itemValue, itemOptions);
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::GetArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex,
                                        tStringObj* itemValue, XMP_OptionBits* options) const {
    const std::string path = xmptoolkit_detail::ArrayItemPath(schemaNS, arrayName, itemIndex);
    return m_tree->GetProperty("GetArrayItem", schemaNS, path.c_str(), itemValue, options);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::SetArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex,
                                        XMP_StringPtr itemValue, XMP_OptionBits options) {
    m_tree->SetArrayItem(schemaNS, arrayName, itemIndex, itemValue, options);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::DeleteArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex) {
    const std::string path = xmptoolkit_detail::ArrayItemPath(schemaNS, arrayName, itemIndex);
    m_tree->DeleteProperty("DeleteArrayItem", schemaNS, path.c_str());
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::DoesArrayItemExist(XMP_StringPtr schemaNS, XMP_StringPtr arrayName,
                                              XMP_Index itemIndex) const {
    const std::string path = xmptoolkit_detail::ArrayItemPath(schemaNS, arrayName, itemIndex);
    return m_tree->HasProperty("DoesArrayItemExist", schemaNS, path.c_str());
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::GetStructField(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                                          XMP_StringPtr fieldName, tStringObj* fieldValue,
                                          XMP_OptionBits* options) const {
    const std::string path = xmptoolkit_detail::StructFieldPath(schemaNS, structName, fieldNS, fieldName);
    return m_tree->GetProperty("GetStructField", schemaNS, path.c_str(), fieldValue, options);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::SetStructField(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                                          XMP_StringPtr fieldName, XMP_StringPtr fieldValue, XMP_OptionBits options) {
    const std::string path = xmptoolkit_detail::StructFieldPath(schemaNS, structName, fieldNS, fieldName);
    m_tree->SetProperty("SetStructField", schemaNS, path.c_str(), fieldValue, options);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::DeleteStructField(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                                             XMP_StringPtr fieldName) {
    const std::string path = xmptoolkit_detail::StructFieldPath(schemaNS, structName, fieldNS, fieldName);
    m_tree->DeleteProperty("DeleteStructField", schemaNS, path.c_str());
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::DoesStructFieldExist(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                                                XMP_StringPtr fieldName) const {
    const std::string path = xmptoolkit_detail::StructFieldPath(schemaNS, structName, fieldNS, fieldName);
    return m_tree->HasProperty("DoesStructFieldExist", schemaNS, path.c_str());
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::GetQualifier(XMP_StringPtr schemaNS, XMP_StringPtr propName, XMP_StringPtr qualNS,
                                        XMP_StringPtr qualName, tStringObj* qualValue, XMP_OptionBits* options) const {
    const std::string path = xmptoolkit_detail::QualifierPath(schemaNS, propName, qualNS, qualName);
    return m_tree->GetProperty("GetQualifier", schemaNS, path.c_str(), qualValue, options);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::SetQualifier(XMP_StringPtr schemaNS, XMP_StringPtr propName, XMP_StringPtr qualNS,
                                        XMP_StringPtr qualName, XMP_StringPtr qualValue, XMP_OptionBits options) {
    const std::string path = xmptoolkit_detail::QualifierPath(schemaNS, propName, qualNS, qualName);
    m_tree->SetProperty("SetQualifier", schemaNS, path.c_str(), qualValue, options);
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::GetLocalizedText(XMP_StringPtr schemaNS, XMP_StringPtr altTextName,
                                            XMP_StringPtr genericLang, XMP_StringPtr specificLang,
                                            tStringObj* actualLang, tStringObj* itemValue,
                                            XMP_OptionBits* options) const {
    return m_tree->GetLocalizedText(schemaNS, altTextName, genericLang, specificLang, actualLang, itemValue, options);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::SetLocalizedText(XMP_StringPtr schemaNS, XMP_StringPtr altTextName,
                                            XMP_StringPtr genericLang, XMP_StringPtr specificLang,
                                            XMP_StringPtr itemValue, XMP_OptionBits options) {
    m_tree->SetLocalizedText(schemaNS, altTextName, genericLang, specificLang, itemValue, options);
}

template <class tStringObj>
void TXMPMeta<tStringObj>::Erase() {
    m_tree->Erase();
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::RegisterNamespace(XMP_StringPtr namespaceURI, XMP_StringPtr suggestedPrefix,
                                             tStringObj* registeredPrefix) {
    return xmptoolkit_detail::RegisterNamespace(namespaceURI, suggestedPrefix, registeredPrefix);
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::GetNamespacePrefix(XMP_StringPtr namespaceURI, tStringObj* namespacePrefix) {
    return xmptoolkit_detail::NamespacePrefix(namespaceURI, namespacePrefix);
}

template <class tStringObj>
bool TXMPMeta<tStringObj>::GetNamespaceURI(XMP_StringPtr namespacePrefix, tStringObj* namespaceURI) {
    return xmptoolkit_detail::NamespaceURI(namespacePrefix, namespaceURI);
}

template class TXMPMeta<std::string>;
