#include <keltemporalxmp/records.hpp>

#include "timestrings/Arguments.hpp"

namespace keltemporalxmp {

XMPCuePointParam::XMPCuePointParam(const char* key, const char* value)
    : m_key(RequiredText(key, "XMPCuePointParam", "key")), m_value(RequiredText(value, "XMPCuePointParam", "value")) {}

void XMPCuePointParam::GetKey(std::string* key) const {
    Required(key, "XMPCuePointParam::GetKey", "output string") = m_key;
}

void XMPCuePointParam::GetValue(std::string* value) const {
    Required(value, "XMPCuePointParam::GetValue", "output string") = m_value;
}

}  // namespace keltemporalxmp
