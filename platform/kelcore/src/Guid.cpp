#include <kelcore/Guid.hpp>

#include <algorithm>
#include <iterator>
#include <optional>

#include <uuid/uuid.h>

#include <kelcore/Exceptions.hpp>

namespace kelcore {
namespace {

constexpr std::size_t kTextLength = 36;
constexpr std::array<std::size_t, 4> kHyphenPositions = {8, 13, 18, 23};
constexpr char kHexDigits[] = "0123456789abcdef";

std::optional<std::uint8_t> HexDigitValue(char c) {
    if (c >= '0' && c <= '9') return static_cast<std::uint8_t>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<std::uint8_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<std::uint8_t>(c - 'A' + 10);
    return std::nullopt;
}

bool IsHyphenPosition(std::size_t position) {
    for (std::size_t hyphen : kHyphenPositions) {
        if (hyphen == position) return true;
    }
    return false;
}

std::optional<Guid::Bytes> ParseGuidText(std::string_view text) {
    if (text.size() == kTextLength + 2 && text.front() == '{' && text.back() == '}') {
        text = text.substr(1, kTextLength);
    }
    if (text.size() != kTextLength) return std::nullopt;

    Guid::Bytes bytes{};
    std::size_t digitCount = 0;
    for (std::size_t position = 0; position < text.size(); ++position) {
        if (IsHyphenPosition(position)) {
            if (text[position] != '-') return std::nullopt;
            continue;
        }
        std::optional<std::uint8_t> value = HexDigitValue(text[position]);
        if (!value) return std::nullopt;
        std::uint8_t& byte = bytes[digitCount / 2];
        byte = static_cast<std::uint8_t>((byte << 4) | *value);
        ++digitCount;
    }
    return bytes;
}

}  // namespace

Guid::Guid(std::string_view text) {
    std::optional<Bytes> bytes = ParseGuidText(text);
    if (!bytes) {
        throw parse_exception("Guid: not a GUID text: '" + std::string(text) + "'");
    }
    m_bytes = *bytes;
}

Guid Guid::CreateUnique() {
    uuid_t raw;
    uuid_generate_random(raw);
    Bytes bytes{};
    std::copy(std::begin(raw), std::end(raw), bytes.begin());
    return Guid(bytes);
}

bool Guid::IsParsableGuidString(std::string_view text) noexcept {
    return ParseGuidText(text).has_value();
}

std::string Guid::AsUTF8String() const {
    std::string text;
    text.reserve(kTextLength);
    for (std::size_t index = 0; index < m_bytes.size(); ++index) {
        if (IsHyphenPosition(text.size())) text.push_back('-');
        text.push_back(kHexDigits[m_bytes[index] >> 4]);
        text.push_back(kHexDigits[m_bytes[index] & 0x0F]);
    }
    return text;
}

std::size_t Guid::HashCode() const noexcept {
    // Fold the two 64-bit halves; the multiplier keeps equal halves from cancelling.
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    for (std::size_t index = 0; index < 8; ++index) {
        high = (high << 8) | m_bytes[index];
        low = (low << 8) | m_bytes[index + 8];
    }
    return static_cast<std::size_t>(high * 0x9E3779B97F4A7C15ULL ^ low);
}

}  // namespace kelcore
