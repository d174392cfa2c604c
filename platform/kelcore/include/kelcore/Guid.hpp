#pragma once
// Guid: a 16-byte identifier, nil by default, printed and parsed in the
// 36-character 8-4-4-4-12 hexadecimal form.

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include <keltemporalxmp/export.hpp>

namespace kelcore {

class KELTXMP_API Guid {
public:
    static constexpr std::size_t kByteCount = 16;
    using Bytes = std::array<std::uint8_t, kByteCount>;

    constexpr Guid() noexcept = default;
    constexpr explicit Guid(const Bytes& bytes) noexcept : m_bytes(bytes) {}

    // Accepts "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx" in any case, optionally
    // inside one pair of braces; anything else throws parse_exception.
    explicit Guid(std::string_view text);

    // A random (version 4) GUID.
    static Guid CreateUnique();

    // True exactly when Guid(text) would accept the text.
    static bool IsParsableGuidString(std::string_view text) noexcept;

    // The 36-character lower-case form, without braces.
    std::string AsUTF8String() const;

    constexpr bool IsNil() const noexcept { return m_bytes == Bytes{}; }
    constexpr const Bytes& GetBytes() const noexcept { return m_bytes; }

    // Byte-wise order, which is also the order of the printed texts.
    friend constexpr bool operator==(const Guid&, const Guid&) noexcept = default;
    friend constexpr std::strong_ordering operator<=>(const Guid&, const Guid&) noexcept = default;

    std::size_t HashCode() const noexcept;

private:
    Bytes m_bytes{};
};

}  // namespace kelcore

template <>
struct std::hash<kelcore::Guid> {
    std::size_t operator()(const kelcore::Guid& guid) const noexcept { return guid.HashCode(); }
};
