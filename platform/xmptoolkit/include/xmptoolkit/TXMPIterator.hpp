#pragma once
// TXMPIterator: walks the nodes of a TXMPMeta tree, or of one of its subtrees.
// The iterator keeps the tree it walks alive, even across a re-parse or the
// end of every handle; changing that tree during the walk ends the walk.

#include <memory>
#include <string>

#include <keltemporalxmp/export.hpp>
#include <xmptoolkit/TXMPMeta.hpp>

namespace xmptoolkit_detail {
struct IteratorState;
}

template <class tStringObj>
class KELTXMP_API TXMPIterator {
public:
    // An empty schemaNS walks every schema; an empty propName the whole schema.
    TXMPIterator(const TXMPMeta<tStringObj>& xmpObj, XMP_StringPtr schemaNS, XMP_StringPtr propName,
                 XMP_OptionBits options = 0);
    TXMPIterator(const TXMPMeta<tStringObj>& xmpObj, XMP_StringPtr schemaNS, XMP_OptionBits options = 0);
    explicit TXMPIterator(const TXMPMeta<tStringObj>& xmpObj, XMP_OptionBits options = 0);
    TXMPIterator(TXMPIterator&&) noexcept;
    TXMPIterator& operator=(TXMPIterator&&) noexcept;
    TXMPIterator(const TXMPIterator&) = delete;
    TXMPIterator& operator=(const TXMPIterator&) = delete;
    ~TXMPIterator();

    bool Next(tStringObj* schemaNS = nullptr, tStringObj* propPath = nullptr, tStringObj* propValue = nullptr,
              XMP_OptionBits* options = nullptr);
    void Skip(XMP_OptionBits options);

private:
    std::unique_ptr<xmptoolkit_detail::IteratorState> m_state;
};

extern template class TXMPIterator<std::string>;
