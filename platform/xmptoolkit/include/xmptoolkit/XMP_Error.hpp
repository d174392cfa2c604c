#pragma once
// The one exception type of the toolkit layer: a positive toolkit error id
// and a message naming the operation and the property path that failed.

#include <exception>
#include <string>

#include <keltemporalxmp/export.hpp>
#include <xmptoolkit/XMP_Const.hpp>

class KELTXMP_API XMP_Error : public std::exception {
public:
    XMP_Error(XMP_Int32 id, XMP_StringPtr message);

    XMP_Int32 GetID() const noexcept { return m_id; }
    XMP_StringPtr GetErrMsg() const noexcept { return m_message.c_str(); }
    const char* what() const noexcept override { return m_message.c_str(); }

private:
    XMP_Int32 m_id;
    std::string m_message;
};
