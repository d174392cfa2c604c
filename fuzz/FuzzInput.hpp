#pragma once
// Splits a fuzzer's bytes into the pieces a target needs: fixed-size numbers
// first, the rest as text (which may hold any byte, a NUL included).

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp::fuzz {

class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    // Zero once the bytes run out.
    std::int64_t TakeInt64() {
        std::int64_t value = 0;
        const std::size_t count = m_size < sizeof value ? m_size : sizeof value;
        if (count > 0) {
            std::memcpy(&value, m_data, count);
        }
        m_data += count;
        m_size -= count;
        return value;
    }

    // Up to the first NUL byte: a C string cannot carry one.
    std::string TakeText() {
        std::string text(reinterpret_cast<const char*>(m_data), m_size);
        m_data += m_size;
        m_size = 0;
        return text.substr(0, text.find('\0'));
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
};

// Bad input must come out as XMP_Error with a positive id and a message.
inline void CheckError(const XMP_Error& error) {
    if (error.GetID() <= 0 || error.GetErrMsg() == nullptr || *error.GetErrMsg() == '\0') {
        __builtin_trap();
    }
}

// The packet, or nothing when the toolkit refuses it.
inline bool ParsePacket(const std::uint8_t* data, std::size_t size, SXMPMeta* meta) {
    try {
        meta->ParseFromBuffer(reinterpret_cast<const char*>(data), static_cast<XMP_StringLen>(size));
        return true;
    } catch (const XMP_Error& error) {
        CheckError(error);
        return false;
    }
}

}  // namespace keltemporalxmp::fuzz
