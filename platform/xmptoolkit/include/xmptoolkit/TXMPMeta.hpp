#pragma once
// TXMPMeta: one XMP metadata tree. The object is a handle: copies share one
// reference-counted tree, Clone() makes an independent deep copy.
//
// The toolkit initialises itself once per process, thread-safely, on first use.
//
// Thread safety: the underlying toolkit keeps its last error in shared state,
// and neither its initialisation nor its namespace registry may be raced, so
// every toolkit call is paired with its error read under one process-wide
// lock. Distinct objects may be used from different threads; one object is
// used by one thread at a time.
//
// Toolkit messages: the underlying toolkit prints the message of every failure
// on std::cerr. At initialisation the layer routes std::cerr through a
// forwarder that moves those messages into the XMP_Error being raised (its text
// ends with the toolkit's message) and passes everything else unchanged. A host
// that later replaces std::cerr's stream buffer gets the toolkit's lines again.
//
// Parsing: a bare rdf:RDF packet is accepted as well as one in x:xmpmeta. A
// failed parse leaves the object as it was. The toolkit's parser gives the
// single language of a two-item alt-text array the x-default's value, so such
// arrays do not survive a packet round trip; Clone() copies node by node.
//
// Namespace prefixes are given with their colon ("xmpDM:").

#include <memory>
#include <string>

#include <keltemporalxmp/export.hpp>
#include <xmptoolkit/XMP_Const.hpp>
#include <xmptoolkit/XMP_Error.hpp>

namespace xmptoolkit_detail {
class MetaTree;  // owns the toolkit's tree; defined by the layer
}

template <class tStringObj>
class KELTXMP_API TXMPMeta {
public:
    TXMPMeta();
    TXMPMeta(XMP_StringPtr buffer, XMP_StringLen size);
    TXMPMeta(const TXMPMeta& original);
    TXMPMeta& operator=(const TXMPMeta& rhs);
    ~TXMPMeta();

    TXMPMeta Clone(XMP_OptionBits options = 0) const;

    void ParseFromBuffer(XMP_StringPtr buffer, XMP_StringLen size, XMP_OptionBits options = 0);
    void SerializeToBuffer(tStringObj* packet, XMP_OptionBits options = 0, XMP_StringLen padding = 0) const;

    bool GetProperty(XMP_StringPtr schemaNS, XMP_StringPtr propName, tStringObj* propValue,
                     XMP_OptionBits* options) const;
    void SetProperty(XMP_StringPtr schemaNS, XMP_StringPtr propName, XMP_StringPtr propValue,
                     XMP_OptionBits options = 0);
    void DeleteProperty(XMP_StringPtr schemaNS, XMP_StringPtr propName);
    bool DoesPropertyExist(XMP_StringPtr schemaNS, XMP_StringPtr propName) const;

    XMP_Index CountArrayItems(XMP_StringPtr schemaNS, XMP_StringPtr arrayName) const;
    void AppendArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_OptionBits arrayOptions,
                         XMP_StringPtr itemValue, XMP_OptionBits itemOptions = 0);
    bool GetArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex, tStringObj* itemValue,
                      XMP_OptionBits* options) const;
    void SetArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex, XMP_StringPtr itemValue,
                      XMP_OptionBits options = 0);
    void DeleteArrayItem(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex);
    bool DoesArrayItemExist(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex) const;

    bool GetStructField(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                        XMP_StringPtr fieldName, tStringObj* fieldValue, XMP_OptionBits* options) const;
    void SetStructField(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                        XMP_StringPtr fieldName, XMP_StringPtr fieldValue, XMP_OptionBits options = 0);
    void DeleteStructField(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                           XMP_StringPtr fieldName);
    bool DoesStructFieldExist(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                              XMP_StringPtr fieldName) const;

    bool GetQualifier(XMP_StringPtr schemaNS, XMP_StringPtr propName, XMP_StringPtr qualNS, XMP_StringPtr qualName,
                      tStringObj* qualValue, XMP_OptionBits* options) const;
    void SetQualifier(XMP_StringPtr schemaNS, XMP_StringPtr propName, XMP_StringPtr qualNS, XMP_StringPtr qualName,
                      XMP_StringPtr qualValue, XMP_OptionBits options = 0);

    bool GetLocalizedText(XMP_StringPtr schemaNS, XMP_StringPtr altTextName, XMP_StringPtr genericLang,
                          XMP_StringPtr specificLang, tStringObj* actualLang, tStringObj* itemValue,
                          XMP_OptionBits* options) const;
    void SetLocalizedText(XMP_StringPtr schemaNS, XMP_StringPtr altTextName, XMP_StringPtr genericLang,
                          XMP_StringPtr specificLang, XMP_StringPtr itemValue, XMP_OptionBits options = 0);

    void Erase();

    static bool RegisterNamespace(XMP_StringPtr namespaceURI, XMP_StringPtr suggestedPrefix,
                                  tStringObj* registeredPrefix);
    static bool GetNamespacePrefix(XMP_StringPtr namespaceURI, tStringObj* namespacePrefix);
    static bool GetNamespaceURI(XMP_StringPtr namespacePrefix, tStringObj* namespaceURI);

    // For the layer's own classes (iterator, utilities, document operations, files).
    xmptoolkit_detail::MetaTree& Tree() const { return *m_tree; }

private:
    KELTXMP_LOCAL explicit TXMPMeta(std::shared_ptr<xmptoolkit_detail::MetaTree> tree);

    std::shared_ptr<xmptoolkit_detail::MetaTree> m_tree;
};

extern template class TXMPMeta<std::string>;
