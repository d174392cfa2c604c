#include "streamread/PacketDocuments.hpp"

#include "docops/IngredientLayout.hpp"
#include "docops/TrackLayout.hpp"

namespace keltemporalxmp::streamread {
namespace {

// A pantry item's fields sit two steps below the pantry: [i]/field.
constexpr int kItemFieldDepth = 2;

}  // namespace

PacketDocuments::PacketDocuments() : m_top(docops::kTracksPath) {}

bool PacketDocuments::Take(const TreeNode& node, std::string& value) {
    if (node.depth == 0) {
        FinishItem();
        m_inPantry = node.name == docops::kPantryPath && (node.options & docops::kListForm) != 0;
        // The top document still hears of the pantry, to close what it was reading.
        return m_top.Take(node, value) || m_inPantry;
    }
    if (!m_inPantry) {
        return m_top.Take(node, value);
    }
    if (node.depth == 1) {
        FinishItem();
        ++m_itemCount;
        m_inItem = (node.options & docops::kItemForm) != 0;
        if (m_inItem) {
            m_itemTracksPath.assign(docops::kPantryPath);
            docops::AppendItemIndex(m_itemTracksPath, m_itemCount);
            m_itemTracksPath.append(1, '/').append(docops::kTracksPath);
            m_pantry.emplace_back(m_itemTracksPath);
        }
        return m_inItem;
    }
    if (!m_inItem) {
        return false;
    }
    return m_pantry.back().Take({node.depth - kItemFieldDepth, node.name, node.options}, value);
}

void PacketDocuments::Finish() {
    FinishItem();
    m_top.Finish();
}

void PacketDocuments::FinishItem() {
    if (m_inItem) {
        m_pantry.back().Finish();
    }
    m_inItem = false;
}

}  // namespace keltemporalxmp::streamread
