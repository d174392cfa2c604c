#include "ToolkitText.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace xmptoolkit_detail {
namespace {

// Windows-1252 for 0x80..0x9F; zero where it has no character.
constexpr std::array<char16_t, 32> kWindows1252 = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                   0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// Whether all 8 bytes are printable ASCII other than '&', the bytes the
// toolkit reads as they are: most of a packet, tested a word at a time.
bool IsPlainAscii(std::uint64_t word) {
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    const std::uint64_t below0x20 = (word - kOnes * 0x20) & ~word & kHighBits;
    const std::uint64_t above0x7E = ((word + kOnes) | word) & kHighBits;
    const std::uint64_t ampersands = word ^ (kOnes * '&');
    const std::uint64_t hasAmpersand = (ampersands - kOnes) & ~ampersands & kHighBits;
    return (below0x20 | above0x7E | hasAmpersand) == 0;
}

bool IsSpaceForToolkit(unsigned char byte) {
    return (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r') || byte == 0x7F;
}

int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// The length of the short reference at `at` that the toolkit reads as a
// space, or 0.
std::size_t ShortReferenceLength(std::string_view text, std::size_t at) {
    if (text.substr(at, 3) != "&#x") return 0;
    int value = 0;
    std::size_t digits = 0;
    while (digits < 3 && at + 3 + digits < text.size() && HexValue(text[at + 3 + digits]) >= 0) {
        value = value * 16 + HexValue(text[at + 3 + digits]);
        ++digits;
    }
    const std::size_t end = at + 3 + digits;
    if (digits == 0 || digits > 2 || end >= text.size() || text[end] != ';') return 0;
    return value == '\t' || value == '\n' || value == '\r' ? 0 : digits + 4;
}

// The bytes of the sequence that the lead byte at `at` starts, when all its
// continuation bytes follow; 0 for a byte read as Windows-1252.
std::size_t SequenceAt(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    std::size_t length = 0;
    if (lead >= 0xC0 && lead < 0xE0)
        length = 2;
    else if (lead >= 0xE0 && lead < 0xF0)
        length = 3;
    else if (lead >= 0xF0 && lead < 0xF8)
        length = 4;
    else if (lead >= 0xF8 && lead < 0xFC)
        length = 5;
    else if (lead >= 0xFC && lead < 0xFE)
        length = 6;
    if (length == 0 || at + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80) return 0;
    }
    return length;
}

void AppendUtf8(char16_t unit, std::string& out) {
    if (unit < 0x80) {
        out += static_cast<char>(unit);
    } else if (unit < 0x800) {
        out += static_cast<char>(0xC0 | (unit >> 6));
        out += static_cast<char>(0x80 | (unit & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (unit >> 12));
        out += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (unit & 0x3F));
    }
}

void AppendWindows1252(unsigned char byte, std::string& out) {
    const char16_t unit = byte < 0xA0 ? kWindows1252[byte - 0x80] : char16_t{byte};
    AppendUtf8(unit == 0 ? u' ' : unit, out);
}

}  // namespace

std::size_t FindChangedByte(std::string_view text, std::size_t from, std::size_t to) {
    std::size_t at = from;
    while (at < to) {
        if (to - at >= sizeof(std::uint64_t)) {
            std::uint64_t word = 0;
            std::memcpy(&word, text.data() + at, sizeof word);
            if (IsPlainAscii(word)) {
                at += sizeof word;
                continue;
            }
        }
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte >= 0x20 && byte < 0x7F && byte != '&') {
            ++at;
        } else if (byte < 0x80) {
            if (IsSpaceForToolkit(byte) || (byte == '&' && ShortReferenceLength(text, at) > 0)) return at;
            ++at;
        } else {
            const std::size_t length = SequenceAt(text, at);
            if (length == 0) return at;
            at += length;
        }
    }
    return at;
}

std::size_t ConvertAsToolkitReads(std::string_view text, std::size_t from, std::size_t budget, std::string& out,
                                  std::vector<TextChange>& changes) {
    out.clear();
    changes.clear();
    std::size_t at = from;
    while (at < text.size() && out.size() < budget) {
        const auto byte = static_cast<unsigned char>(text[at]);
        std::size_t consumed = 1;
        const std::size_t start = out.size();
        if (byte < 0x80) {
            const std::size_t reference = byte == '&' ? ShortReferenceLength(text, at) : 0;
            if (reference > 0) consumed = reference;
            out += reference > 0 || IsSpaceForToolkit(byte) ? ' ' : static_cast<char>(byte);
        } else if (const std::size_t length = SequenceAt(text, at); length > 0) {
            consumed = length;
            out.append(text.substr(at, length));
        } else {
            AppendWindows1252(byte, out);
        }
        if (out.size() - start != consumed) changes.push_back({start, out.size(), at - from, at - from + consumed});
        at += consumed;
    }
    return at;
}

std::size_t OriginalOffset(const std::vector<TextChange>& changes, std::size_t converted) {
    const auto after =
        std::upper_bound(changes.begin(), changes.end(), converted,
                         [](std::size_t at, const TextChange& change) { return at < change.m_convertedStart; });
    if (after == changes.begin()) return converted;
    const TextChange& change = *std::prev(after);
    if (converted < change.m_convertedEnd) return change.m_originalStart;
    return change.m_originalEnd + (converted - change.m_convertedEnd);
}

}  // namespace xmptoolkit_detail
