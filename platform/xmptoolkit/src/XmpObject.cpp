#include "MetaTree.hpp"
#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {

std::shared_ptr<XmpObject> XmpObject::NewEmpty() {
    XmpPtr xmp = nullptr;
    RequireSuccess(CallToolkit([&] { return (xmp = xmp_new_empty()) != nullptr; }), "Creating XMP object", "",
                   kXMPErr_NoMemory);
    return std::make_shared<XmpObject>(xmp);
}

XmpObject::~XmpObject() {
    CallToolkit([&] { return xmp_free(m_xmp); });
}

}  // namespace xmptoolkit_detail
