#include <xmptoolkit/TXMPIterator.hpp>

#include "TreeWalk.hpp"

namespace xmptoolkit_detail {
struct IteratorState {
    TreeWalk m_walk;
};
}  // namespace xmptoolkit_detail

using xmptoolkit_detail::IteratorState;

template <class tStringObj>
TXMPIterator<tStringObj>::TXMPIterator(const TXMPMeta<tStringObj>& xmpObj, XMP_StringPtr schemaNS,
                                       XMP_StringPtr propName, XMP_OptionBits options)
    : m_state(new IteratorState{{xmpObj.Tree(), schemaNS, propName, options}}) {}

template <class tStringObj>
TXMPIterator<tStringObj>::TXMPIterator(const TXMPMeta<tStringObj>& xmpObj, XMP_StringPtr schemaNS,
                                       XMP_OptionBits options)
    : TXMPIterator(xmpObj, schemaNS, "", options) {}

template <class tStringObj>
TXMPIterator<tStringObj>::TXMPIterator(const TXMPMeta<tStringObj>& xmpObj, XMP_OptionBits options)
    : TXMPIterator(xmpObj, "", "", options) {}

template <class tStringObj>
TXMPIterator<tStringObj>::TXMPIterator(TXMPIterator&&) noexcept = default;

template <class tStringObj>
TXMPIterator<tStringObj>& TXMPIterator<tStringObj>::operator=(TXMPIterator&&) noexcept = default;

template <class tStringObj>
TXMPIterator<tStringObj>::~TXMPIterator() = default;

template <class tStringObj>
bool TXMPIterator<tStringObj>::Next(tStringObj* schemaNS, tStringObj* propPath, tStringObj* propValue,
                                    XMP_OptionBits* options) {
    xmptoolkit_detail::TreeNode node;
    if (!m_state || !m_state->m_walk.Next(&node)) {
        return false;
    }
    if (schemaNS != nullptr) {
        *schemaNS = std::move(node.m_schemaNS);
    }
    if (propPath != nullptr) {
        *propPath = std::move(node.m_path);
    }
    if (propValue != nullptr) {
        *propValue = std::move(node.m_value);
    }
    if (options != nullptr) {
        *options = node.m_options;
    }
    return true;
}

template <class tStringObj>
void TXMPIterator<tStringObj>::Skip(XMP_OptionBits options) {
    if (m_state) {
        m_state->m_walk.Skip(options);
    }
}

template class TXMPIterator<std::string>;
