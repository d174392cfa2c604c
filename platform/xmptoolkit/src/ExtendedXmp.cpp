#include "ExtendedXmp.hpp"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>

namespace xmptoolkit_detail {
namespace {

constexpr std::string_view kSignature{"http://ns.adobe.com/xmp/extension/\0", 35};
constexpr std::size_t kGuidBytes = 32;
// Marker (2) and length (2) before the signature; GUID, whole length and offset after it.
constexpr std::size_t kMarkerBytes = 4;
constexpr std::size_t kHeaderBytes = kSignature.size() + kGuidBytes + 8;

std::uint32_t BigEndian32(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = (value << 8) | static_cast<unsigned char>(bytes[i]);
    return value;
}

struct Piece {
    std::size_t segment;
    std::uint32_t wholeLength;
    std::uint32_t offset;
    std::string_view data;
};

ExtendedXmp Assemble(const std::string& guid, std::vector<Piece>& pieces) {
    std::stable_sort(pieces.begin(), pieces.end(), [](const Piece& a, const Piece& b) { return a.offset < b.offset; });
    ExtendedXmp extended{guid, pieces.front().segment, {}, true};
    for (const Piece& piece : pieces) {
        extended.piecesTile = extended.piecesTile && piece.offset == extended.text.size() &&
                              piece.wholeLength == pieces.front().wholeLength;
        extended.firstSegment = std::min(extended.firstSegment, piece.segment);
        extended.text.append(piece.data);
    }
    extended.piecesTile = extended.piecesTile && extended.text.size() == pieces.front().wholeLength;
    return extended;
}

}  // namespace

std::vector<ExtendedXmp> FindExtendedXmp(std::string_view fileBytes) {
    static const std::boyer_moore_horspool_searcher search(kSignature.begin(), kSignature.end());
    std::map<std::string, std::vector<Piece>> piecesByGuid;
    for (auto at = std::search(fileBytes.begin(), fileBytes.end(), search); at != fileBytes.end();
         at = std::search(at + 1, fileBytes.end(), search)) {
        const std::size_t signature = static_cast<std::size_t>(at - fileBytes.begin());
        if (signature < kMarkerBytes) continue;
        const std::size_t segment = signature - kMarkerBytes;
        // Only an APP1 segment is read as one.
        if (fileBytes[segment] != '\xFF' || fileBytes[segment + 1] != '\xE1') continue;
        const std::size_t length = (static_cast<unsigned char>(fileBytes[segment + 2]) << 8) |
                                   static_cast<unsigned char>(fileBytes[segment + 3]);
        const std::size_t payloadEnd = std::min(segment + 2 + length, fileBytes.size());
        if (payloadEnd < signature + kHeaderBytes) continue;
        const std::string_view header = fileBytes.substr(signature + kSignature.size(), kGuidBytes + 8);
        piecesByGuid[std::string(header.substr(0, kGuidBytes))].push_back(
            {segment, BigEndian32(header.substr(kGuidBytes)), BigEndian32(header.substr(kGuidBytes + 4)),
             fileBytes.substr(signature + kHeaderBytes, payloadEnd - signature - kHeaderBytes)});
    }
    std::vector<ExtendedXmp> packets;
    for (auto& [guid, pieces] : piecesByGuid) packets.push_back(Assemble(guid, pieces));
    return packets;
}

}  // namespace xmptoolkit_detail
