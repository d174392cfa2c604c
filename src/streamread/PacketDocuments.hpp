#pragma once
// The documents of one packet, the packet's own and each item of its
// xmpMM:Pantry, all from one pass: as the collector reads them in place, or
// as each item reads once extracted into a document of its own.

#include <deque>
#include <string>

#include "streamread/DocumentReading.hpp"
#include "streamread/RdfWalk.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] streamread {

enum class PantryItems {
    // Struct items, their tracks named by their place and keyword cue points kept.
    kInPlace,
    // Every item that extracts: a simple one as an empty document; tracks
    // named and read as XMPDocOpsTemporal reads the extracted document.
    kExtracted,
};

class PacketDocuments final : public NodeSink {
public:
    explicit PacketDocuments(PantryItems items = PantryItems::kInPlace);

    bool Take(const TreeNode& node, std::string& value) override;
    // After the walk's last node.
    void Finish();

    DocumentReading& Top() { return m_top; }
    // The pantry's items in list order; addresses stay put.
    std::deque<DocumentReading>& Pantry() { return m_pantry; }
    // kExtracted: the toolkit refuses to list the pantry (no list, or an item
    // that is a list).
    bool PantryUnlistable() const { return m_pantryUnlistable; }

private:
    void FinishItem();
    bool StartItem(XMP_OptionBits options);

    PantryItems m_items;
    DocumentReading m_top;
    std::deque<DocumentReading> m_pantry;
    bool m_inPantry = false;
    bool m_inItem = false;
    std::size_t m_itemCount = 0;  // items of any form, as the toolkit numbers them
    std::string m_itemTracksPath;
    bool m_pantryUnlistable = false;
};

}  // namespace streamread
}  // namespace keltemporalxmp
