#pragma once
// JPEG extended XMP: a packet too large for one segment, written in pieces
// over APP1 segments, each with the packet's GUID, its whole length and the
// piece's offset. The toolkit's JPEG handler puts the pieces together and
// parses the result, so the guard must see that text too.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace xmptoolkit_detail {

struct ExtendedXmp {
    std::string guid;
    std::size_t firstSegment = 0;  // byte offset in the file, for messages
    std::string text;              // the pieces in offset order
    bool piecesTile = true;        // false: they overlap, repeat, leave gaps or disagree on the length
};

// Every extended packet of the file's bytes, one per GUID.
std::vector<ExtendedXmp> FindExtendedXmp(std::string_view fileBytes);

}  // namespace xmptoolkit_detail
