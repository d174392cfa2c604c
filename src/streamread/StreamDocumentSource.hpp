#pragma once
// The collector's documents out of one streaming pass: the same records the
// toolkit path reads by path, each made at most once, when first asked for.

#include <map>
#include <string>

#include "collector/DocumentSource.hpp"
#include "streamread/PacketDocuments.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] streamread {

class StreamDocumentSource final : public collector::DocumentSource {
public:
    // Keeps a reference to documents, which the source takes the tracks of.
    explicit StreamDocumentSource(PacketDocuments& documents);

    const collector::DocumentRecords& Top(collector::Content content) override;
    const collector::DocumentRecords* Find(const std::string& instanceID, collector::Content content) override;

private:
    struct Document {
        DocumentReading* m_reading = nullptr;
        collector::DocumentRecords m_records;
        bool m_ingredientsRead = false;
        bool m_tracksRead = false;
    };

    collector::DocumentRecords& Read(Document& document, collector::Content content);

    Document m_top;
    // By instance ID; an ID held by two items keeps the first.
    std::map<std::string, Document> m_pantry;
};

}  // namespace streamread
}  // namespace keltemporalxmp
