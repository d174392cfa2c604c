#pragma once
// The collector's documents read out of a toolkit XMP object: the document
// itself and the items of its xmpMM:Pantry, each read at most once.

#include <map>
#include <string>

#include <xmptoolkit/XMP.hpp>

#include "collector/DocumentSource.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] collector {

class XmpDocumentSource final : public DocumentSource {
public:
    // Keeps a handle on xmp, which must not change while the source is used.
    explicit XmpDocumentSource(const SXMPMeta& xmp);

    const DocumentRecords& Top(Content content) override;
    const DocumentRecords* Find(const std::string& instanceID, Content content) override;

private:
    struct Document {
        std::string m_path;  // empty for the top document
        DocumentRecords m_records;
        bool m_ingredientsRead = false;
        bool m_tracksRead = false;
    };

    DocumentRecords& Read(Document& document, Content content);

    SXMPMeta m_xmp;
    Document m_top;
    // By instance ID; an ID held by two items keeps the first.
    std::map<std::string, Document> m_pantry;
};

}  // namespace collector
}  // namespace keltemporalxmp
