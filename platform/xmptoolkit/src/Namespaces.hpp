#pragma once
// The toolkit's process-wide namespace registry. Prefixes come back with
// their colon ("xmpDM:"), as the toolkit gives them.

#include <string>

#include <xmptoolkit/XMP_Const.hpp>

namespace xmptoolkit_detail {

// False when the URI got a prefix other than the suggested one.
bool RegisterNamespace(XMP_StringPtr namespaceURI, XMP_StringPtr suggestedPrefix, std::string* registeredPrefix);
bool NamespacePrefix(XMP_StringPtr namespaceURI, std::string* prefix);
bool NamespaceURI(XMP_StringPtr prefix, std::string* namespaceURI);

}  // namespace xmptoolkit_detail
