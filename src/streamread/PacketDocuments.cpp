#include "streamread/PacketDocuments.hpp"

#include "docops/IngredientLayout.hpp"
#include "docops/TrackLayout.hpp"

namespace keltemporalxmp::streamread {
namespace {

// A pantry item's fields sit two steps below the pantry: [i]/field.
constexpr int kItemFieldDepth = 2;

}  // namespace

PacketDocuments::PacketDocuments(PantryItems items)
    : m_items(items), m_top(docops::kTracksPath, docops::KeywordCuePoints::kKeptAsCuePoints) {}

bool PacketDocuments::Take(const TreeNode& node, std::string& value) {
    if (node.depth == 0) {
        FinishItem();
        const bool isPantry = node.name == docops::kPantryPath;
        m_inPantry = isPantry && (node.options & docops::kListForm) != 0;
        m_pantryUnlistable = m_pantryUnlistable || (isPantry && !m_inPantry);
        if (m_items == PantryItems::kExtracted) {
            return m_inPantry;  // the top document's own properties are not wanted
        }
        // The top document still hears of the pantry, to close what it was reading.
        return m_top.Take(node, value) || m_inPantry;
    }
    if (!m_inPantry) {
        return m_top.Take(node, value);
    }
    if (node.depth == 1) {
        FinishItem();
        ++m_itemCount;
        return StartItem(node.options);
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

bool PacketDocuments::StartItem(XMP_OptionBits options) {
    const bool isStruct = (options & docops::kItemForm) != 0;
    if (m_items == PantryItems::kExtracted) {
        // The extracted document holds a struct's fields; a simple item has none.
        m_pantryUnlistable = m_pantryUnlistable || (options & docops::kListForm) != 0;
        m_pantry.emplace_back(docops::kTracksPath, docops::KeywordCuePoints::kToKeywords);
        m_inItem = isStruct;
        return m_inItem;
    }
    m_inItem = isStruct;
    if (m_inItem) {
        m_itemTracksPath.assign(docops::kPantryPath);
        docops::AppendItemIndex(m_itemTracksPath, m_itemCount);
        m_itemTracksPath.append(1, '/').append(docops::kTracksPath);
        m_pantry.emplace_back(m_itemTracksPath, docops::KeywordCuePoints::kKeptAsCuePoints);
    }
    return m_inItem;
}

void PacketDocuments::FinishItem() {
    if (m_inItem) {
        m_pantry.back().Finish();
    }
    m_inItem = false;
}

}  // namespace keltemporalxmp::streamread
