#include <string>

#include "MetaTree.hpp"
#include "PacketGuard.hpp"
#include "PacketText.hpp"
#include "SubtreeCopy.hpp"
#include "ToolkitCall.hpp"
#include "XmpText.hpp"

namespace xmptoolkit_detail {

MetaTree::MetaTree() : m_object(XmpObject::NewEmpty()) {}

// A failed parse can leave a partial tree behind in the toolkit object, so the
// packet goes into a fresh object that replaces the current one on success.
void MetaTree::Parse(XMP_StringPtr buffer, XMP_StringLen size) {
    constexpr std::string_view kOperation = "ParseFromBuffer";
    if (size > 0) {
        RequireArgument(buffer, kOperation, "buffer pointer");
    }
    const std::string packet = WithXmpMetaWrapper(std::string_view(buffer == nullptr ? "" : buffer, size));
    GuardPacket(packet, kOperation);
    auto fresh = XmpObject::NewEmpty();
    RequireSuccess(CallToolkit([&] { return xmp_parse(fresh->Get(), packet.data(), packet.size()); }), kOperation, "",
                   kXMPErr_BadParse);
    m_object = std::move(fresh);
}

void MetaTree::Serialize(std::string* packet, XMP_OptionBits options, XMP_StringLen padding) const {
    constexpr std::string_view kOperation = "SerializeToBuffer";
    RequireArgument(packet, kOperation, "output packet pointer");
    XmpText text;
    RequireSuccess(CallToolkit([&] { return xmp_serialize(Handle(), text.Get(), options, padding); }), kOperation, "",
                   kXMPErr_BadSerialize);
    std::string written;
    text.CopyTo(&written);
    // Nothing is written that the guard would refuse to read back.
    GuardPacket(written, kOperation, kXMPErr_BadSerialize);
    *packet = std::move(written);
}

// The toolkit's own copy shares the tree. A trip through a packet would be
// faster but is not faithful: the toolkit's parser makes the one language of
// a two-item alt-text array take the x-default value. So: node by node.
std::shared_ptr<MetaTree> MetaTree::Clone() const {
    auto copy = std::make_shared<MetaTree>();
    DuplicateSubtree(*this, *copy, "*", "*", "", "");
    return copy;
}

void MetaTree::Erase() {
    m_object = XmpObject::NewEmpty();
}

}  // namespace xmptoolkit_detail
