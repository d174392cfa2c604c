#pragma once
// A toolkit string that frees itself.

#include <exempi/xmp.h>

#include <string>

namespace xmptoolkit_detail {

class XmpText {
public:
    XmpText() : m_text(xmp_string_new()) {}
    ~XmpText() { xmp_string_free(m_text); }
    XmpText(const XmpText&) = delete;
    XmpText& operator=(const XmpText&) = delete;

    XmpStringPtr Get() const { return m_text; }

    // Copies into an optional output.
    void CopyTo(std::string* out) const {
        if (out != nullptr) {
            out->assign(xmp_string_cstr(m_text), xmp_string_len(m_text));
        }
    }

private:
    XmpStringPtr m_text;
};

}  // namespace xmptoolkit_detail
