#include <xmptoolkit/XMP_Error.hpp>

XMP_Error::XMP_Error(XMP_Int32 id, XMP_StringPtr message) : m_id(id), m_message(message ? message : "") {}
