#include <kelmetadata/NamespaceDefinition.hpp>

#include <xmptoolkit/XMP.hpp>

namespace kelmetadata {

SchemaDefinition::SchemaDefinition(std::string schemaText) : m_schemaText(std::move(schemaText)) {}

std::shared_ptr<const SchemaDefinition> NamespaceDefinition(const std::string& uri) {
    std::string prefix;
    if (!SXMPMeta::GetNamespacePrefix(uri.c_str(), &prefix)) {
        const std::string message = "NamespaceDefinition: unknown namespace URI \"" + uri + "\"";
        throw XMP_Error(kXMPErr_BadParam, message.c_str());
    }
    if (prefix.ends_with(':')) {
        prefix.pop_back();
    }
    return std::make_shared<const SchemaDefinition>(std::move(prefix));
}

}  // namespace kelmetadata
