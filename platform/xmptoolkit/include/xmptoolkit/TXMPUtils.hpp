#pragma once
// TXMPUtils: path composition and whole-tree operations built on TXMPMeta.

#include <string>

#include <keltemporalxmp/export.hpp>
#include <xmptoolkit/TXMPMeta.hpp>

template <class tStringObj>
class KELTXMP_API TXMPUtils {
public:
    static void ComposeArrayItemPath(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex,
                                     tStringObj* fullPath);
    static void ComposeStructFieldPath(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                                       XMP_StringPtr fieldName, tStringObj* fullPath);
    static void ComposeQualifierPath(XMP_StringPtr schemaNS, XMP_StringPtr propName, XMP_StringPtr qualNS,
                                     XMP_StringPtr qualName, tStringObj* fullPath);

    // Copies a subtree (with its qualifiers) from source to dest. A sourceNS and
    // sourceRoot of "*" copy every top-level property; empty destNS / destRoot
    // mean "the same as the source".
    static void DuplicateSubtree(const TXMPMeta<tStringObj>& source, TXMPMeta<tStringObj>* dest, XMP_StringPtr sourceNS,
                                 XMP_StringPtr sourceRoot, XMP_StringPtr destNS = nullptr,
                                 XMP_StringPtr destRoot = nullptr, XMP_OptionBits options = 0);

    // Merges templ into working according to the kXMPTemplate_... action bits.
    static void ApplyTemplate(TXMPMeta<tStringObj>* workingXMP, const TXMPMeta<tStringObj>& templateXMP,
                              XMP_OptionBits actions);

    static void CurrentDateTime(XMP_DateTime* time);
    static void ConvertFromDate(const XMP_DateTime& binValue, tStringObj* strValue);
};

extern template class TXMPUtils<std::string>;
