#include <xmptoolkit/TXMPUtils.hpp>

#include "DateText.hpp"
#include "MetaTree.hpp"
#include "PathComposition.hpp"
#include "SubtreeCopy.hpp"
#include "TemplateApplication.hpp"
#include "ToolkitCall.hpp"

using xmptoolkit_detail::RequireArgument;

namespace {

std::string TextOrEmpty(XMP_StringPtr text) {
    return text == nullptr ? std::string() : std::string(text);
}

}  // namespace

template <class tStringObj>
void TXMPUtils<tStringObj>::ComposeArrayItemPath(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex,
                                                 tStringObj* fullPath) {
    RequireArgument(fullPath, "ComposeArrayItemPath", "output path pointer");
    *fullPath = xmptoolkit_detail::ArrayItemPath(schemaNS, arrayName, itemIndex);
}

template <class tStringObj>
void TXMPUtils<tStringObj>::ComposeStructFieldPath(XMP_StringPtr schemaNS, XMP_StringPtr structName,
                                                   XMP_StringPtr fieldNS, XMP_StringPtr fieldName,
                                                   tStringObj* fullPath) {
    RequireArgument(fullPath, "ComposeStructFieldPath", "output path pointer");
    *fullPath = xmptoolkit_detail::StructFieldPath(schemaNS, structName, fieldNS, fieldName);
}

template <class tStringObj>
void TXMPUtils<tStringObj>::ComposeQualifierPath(XMP_StringPtr schemaNS, XMP_StringPtr propName, XMP_StringPtr qualNS,
                                                 XMP_StringPtr qualName, tStringObj* fullPath) {
    RequireArgument(fullPath, "ComposeQualifierPath", "output path pointer");
    *fullPath = xmptoolkit_detail::QualifierPath(schemaNS, propName, qualNS, qualName);
}

template <class tStringObj>
void TXMPUtils<tStringObj>::DuplicateSubtree(const TXMPMeta<tStringObj>& source, TXMPMeta<tStringObj>* dest,
                                             XMP_StringPtr sourceNS, XMP_StringPtr sourceRoot, XMP_StringPtr destNS,
                                             XMP_StringPtr destRoot, XMP_OptionBits /*options*/) {
    if (dest == nullptr) {
        throw XMP_Error(kXMPErr_BadParam, "Null output SXMPMeta pointer");
    }
    RequireArgument(sourceNS, "DuplicateSubtree", "source namespace");
    RequireArgument(sourceRoot, "DuplicateSubtree", "source root");
    xmptoolkit_detail::DuplicateSubtree(source.Tree(), dest->Tree(), sourceNS, sourceRoot, TextOrEmpty(destNS),
                                        TextOrEmpty(destRoot));
}

template <class tStringObj>
void TXMPUtils<tStringObj>::ApplyTemplate(TXMPMeta<tStringObj>* workingXMP, const TXMPMeta<tStringObj>& templateXMP,
                                          XMP_OptionBits actions) {
    if (workingXMP == nullptr) {
        throw XMP_Error(kXMPErr_BadParam, "Null working SXMPMeta pointer");
    }
    xmptoolkit_detail::ApplyTemplate(workingXMP->Tree(), templateXMP.Tree(), actions);
}

template <class tStringObj>
void TXMPUtils<tStringObj>::CurrentDateTime(XMP_DateTime* time) {
    RequireArgument(time, "CurrentDateTime", "output date pointer");
    *time = xmptoolkit_detail::CurrentDateTime();
}

template <class tStringObj>
void TXMPUtils<tStringObj>::ConvertFromDate(const XMP_DateTime& binValue, tStringObj* strValue) {
    RequireArgument(strValue, "ConvertFromDate", "output text pointer");
    *strValue = xmptoolkit_detail::DateText(binValue);
}

template class TXMPUtils<std::string>;
