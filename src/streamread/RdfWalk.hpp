#pragma once
// Follows the RDF of a packet element by element, as the XML parser reports
// it, and hands the nodes a reader asks for to that reader in the order the
// toolkit's tree would give them. It accepts only the forms whose tree it
// knows for certain; anything else, or anything the toolkit would refuse,
// makes it give up so that the toolkit reads the packet instead.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "docops/TrackListAssembly.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] streamread {

// An XML name as the parser reports it with namespace processing: the
// namespace URI and the local name.
struct XmlName {
    std::string_view uri;
    std::string_view local;
};

// A node of the packet's tree: its depth (0 for a top-level property), the
// last step of its path as the toolkit names it (empty for an item, and for
// fields of schemas no reader here reads) and its form.
using TreeNode = docops::TrackNode;

// What a product of the walk reads. It is given every top-level property,
// and the nodes below a node only when it answered true for that node; each
// subtree comes in the toolkit's order. A simple node's value may be taken
// from `value`. It must not throw: a failure belongs to what it was reading.
class NodeSink {
public:
    virtual bool Take(const TreeNode& node, std::string& value) = 0;

protected:
    ~NodeSink() = default;
};

class RdfWalk {
public:
    explicit RdfWalk(NodeSink& sink);

    // attributes: name, value, name, value, ..., null (the parser's layout).
    void StartElement(const XmlName& name, const char** attributes, const XmlName* attributeNames,
                      std::size_t attributeCount);
    void EndElement();
    void Text(std::string_view text);
    // A comment or processing instruction.
    void Markup();

    bool GaveUp() const { return m_gaveUp; }
    void GiveUp() { m_gaveUp = true; }
    // After the last element: gives up unless the packet was whole.
    void Finish();

private:
    enum class Role : std::uint8_t { kOutside, kWrapper, kRdf, kTopDescription, kProperty, kContainer, kNode };
    enum class Shape : std::uint8_t { kOpen, kStruct, kAttributeStruct, kNodeStruct, kArray, kDone };

    struct Frame {
        Role role = Role::kOutside;
        Shape shape = Shape::kOpen;
        bool sendsNode = false;      // its node goes to the assembler
        bool wantsChildren = false;  // the sink wants the nodes below
        bool hasText = false;        // text other than whitespace
        int depth = 0;               // of its node
        std::size_t firstField = 0;  // its field names in m_fieldNames
        std::uint64_t namedChildren = 0;
        std::uint64_t items = 0;
        std::string text;
        std::string nodeName;  // a field's name in the toolkit's paths, when its node is sent
    };

    Frame& Push(Role role);
    void StartInRdf(const XmlName& name, const char** attributes, const XmlName* names, std::size_t count);
    void StartTopDescription(const char** attributes, const XmlName* names, std::size_t count);
    void StartProperty(Frame& parent, const XmlName& name, bool isItem, const char** attributes, const XmlName* names,
                       std::size_t count);
    void StartInProperty(Frame& property, const XmlName& name, const char** attributes, const XmlName* names,
                         std::size_t count);
    void AddAttributeFields(Frame& structFrame, const char** attributes, const XmlName* names, std::size_t count);
    bool CountChild(Frame& parent, bool isItem);
    bool AddTopLevelName(const XmlName& name);
    bool AddFieldName(const Frame& structFrame, const XmlName& name);
    static void NodeName(const XmlName& name, std::string& nodeName);
    // Whether the sink wants the nodes below.
    bool Send(bool sends, int depth, std::string_view nodeName, XMP_OptionBits options, std::string& value);
    // The property's node, now that its form is known.
    void SendShape(Frame& frame, XMP_OptionBits options, std::string& value);
    Frame* Parent();

    NodeSink& m_sink;
    std::vector<Frame> m_frames;  // kept between elements so their strings keep their buffers
    std::size_t m_open = 0;       // frames in use
    bool m_gaveUp = false;
    bool m_sawRdf = false;
    bool m_sawAbout = false;
    std::string m_about;
    std::unordered_set<std::uint64_t> m_topLevelNames;
    std::vector<std::uint64_t> m_fieldNames;
    std::string m_nodeName;
    std::string m_noValue;
    std::string m_attributeValue;
};

}  // namespace streamread
}  // namespace keltemporalxmp
