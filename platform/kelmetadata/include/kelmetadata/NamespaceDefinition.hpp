#pragma once
// Schema definitions: what the metadata layer knows about one XMP namespace.

#include <memory>
#include <string>

#include <keltemporalxmp/export.hpp>

namespace kelmetadata {

class KELTXMP_API SchemaDefinition {
public:
    explicit SchemaDefinition(std::string schemaText);

    // The namespace's registered prefix without its colon, e.g. "xmpDM".
    const std::string& GetSchemaText() const { return m_schemaText; }

private:
    std::string m_schemaText;
};

// The definition of a registered namespace. An unknown URI raises XMP_Error
// (bad parameter) naming the URI.
KELTXMP_API std::shared_ptr<const SchemaDefinition> NamespaceDefinition(const std::string& uri);

}  // namespace kelmetadata
