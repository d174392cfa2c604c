#pragma once
// The documents of one packet as the collector reads them: the packet's own
// and each item of its xmpMM:Pantry, all from one pass.

#include <deque>
#include <string>

#include "streamread/DocumentReading.hpp"
#include "streamread/RdfWalk.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] streamread {

class PacketDocuments final : public NodeSink {
public:
    PacketDocuments();

    bool Take(const TreeNode& node, std::string& value) override;
    // After the walk's last node.
    void Finish();

    DocumentReading& Top() { return m_top; }
    // The pantry's struct items in list order; addresses stay put.
    std::deque<DocumentReading>& Pantry() { return m_pantry; }

private:
    void FinishItem();

    DocumentReading m_top;
    std::deque<DocumentReading> m_pantry;
    bool m_inPantry = false;
    bool m_inItem = false;
    std::size_t m_itemCount = 0;  // items of any form, as the toolkit numbers them
    std::string m_itemTracksPath;
};

}  // namespace gnu::visibility("hidden")]]streamread
}  // namespace keltemporalxmp
