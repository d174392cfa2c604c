#pragma once
// The toolkit only accepts packets with an x:xmpmeta element around rdf:RDF
// (a bare rdf:RDF parses to an empty tree without complaint), so bare RDF is
// given that wrapper before parsing.

#include <string>
#include <string_view>

namespace xmptoolkit_detail {

std::string WithXmpMetaWrapper(std::string_view packet);

}  // namespace xmptoolkit_detail
