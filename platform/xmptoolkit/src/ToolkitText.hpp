#pragma once
// The text the toolkit's XML parser reads for a packet given as bytes. Before
// parsing, the toolkit reads each byte that does not start a UTF-8 sequence
// as a Windows-1252 character (a space where that has none), a control
// character or DEL as a space, and a character reference of one or two
// hexadecimal digits as a space unless it stands for a tab or a line end.
// The guard reads the same text: where it saw an XML error that the toolkit
// does not, it would stop checking and let the rest of the packet through.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace xmptoolkit_detail {

// Where converted text and the bytes it came from differ in length: the
// converted range [m_convertedStart, m_convertedEnd) stands for the bytes
// [m_originalStart, m_originalEnd).
struct TextChange {
    std::size_t m_convertedStart;
    std::size_t m_convertedEnd;
    std::size_t m_originalStart;
    std::size_t m_originalEnd;
};

// The first byte in [from, to) that the toolkit reads as something else;
// else the end of the last sequence that starts before `to` (which may lie a
// few bytes past it, so that no sequence is split).
std::size_t FindChangedByte(std::string_view text, std::size_t from, std::size_t to);

// Converts bytes from `from` on into `out` (replacing it) until `out` holds
// at least `budget` bytes or the text ends, never splitting a sequence or a
// reference; returns the offset of the first byte not converted. `changes`
// receives the length changes, relative to the start of `from` and of `out`.
std::size_t ConvertAsToolkitReads(std::string_view text, std::size_t from, std::size_t budget, std::string& out,
                                  std::vector<TextChange>& changes);

// The offset in the original bytes of converted offset `converted`; inside
// a converted character, the offset of its first byte.
std::size_t OriginalOffset(const std::vector<TextChange>& changes, std::size_t converted);

}  // namespace xmptoolkit_detail
