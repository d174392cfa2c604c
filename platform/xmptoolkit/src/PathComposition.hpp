#pragma once
// Path composition in the toolkit's XPath subset: "ns:arr[2]", "ns:arr[last()]",
// "ns:struct/ns2:field", "ns:prop/?ns2:qualifier".

#include <string>

#include <xmptoolkit/XMP_Const.hpp>

namespace xmptoolkit_detail {

std::string ArrayItemPath(XMP_StringPtr schemaNS, XMP_StringPtr arrayName, XMP_Index itemIndex);
std::string StructFieldPath(XMP_StringPtr schemaNS, XMP_StringPtr structName, XMP_StringPtr fieldNS,
                            XMP_StringPtr fieldName);
std::string QualifierPath(XMP_StringPtr schemaNS, XMP_StringPtr propName, XMP_StringPtr qualNS, XMP_StringPtr qualName);

}  // namespace xmptoolkit_detail
