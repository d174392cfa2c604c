#include "PacketGuard.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include <expat.h>

#include <xmptoolkit/XMP_Const.hpp>
#include <xmptoolkit/XMP_PacketLimits.hpp>

#include "ExtendedXmp.hpp"
#include "ToolkitCall.hpp"
#include "ToolkitText.hpp"

namespace xmptoolkit_detail {
namespace {

using Limits = XMP_PacketLimits;

// Most packets go to expat in one call, which costs about a tenth less than
// 1 MiB pieces; a copied piece (control characters, UTF-16) stays bounded.
constexpr std::size_t kChunkBytes = std::size_t{16} << 20;
// Converted text goes in small pieces: each keeps a list of its length changes.
constexpr std::size_t kConvertedPieceBytes = std::size_t{64} << 10;

struct Breach {
    std::string m_what;
    std::uint64_t m_line = 0;
};

struct Level {
    std::uint64_t m_children = 0;
    std::uint64_t m_named = 0;               // children and attributes other than array items
    std::uint64_t m_namedGrandchildren = 0;  // named children of named children: rdf:Description merges them
    bool m_isNamed = false;
};

// How packet text reaches expat. Bytes: as the toolkit's parser reads them
// (see ToolkitText.hpp), in UTF-8. UTF-16: one byte per unit, which keeps the
// markup (it is ASCII) and reads every other character as a name character.
enum class TextForm { Bytes, Utf16LE, Utf16BE };

TextForm DetectForm(std::string_view text) {
    if (text.size() < 2) return TextForm::Bytes;
    const auto first = static_cast<unsigned char>(text[0]);
    const auto second = static_cast<unsigned char>(text[1]);
    if ((first == 0xFE && second == 0xFF) || (first == 0 && second != 0)) return TextForm::Utf16BE;
    if ((first == 0xFF && second == 0xFE) || (first != 0 && second == 0)) return TextForm::Utf16LE;
    return TextForm::Bytes;
}

bool HasByteOrderMark(std::string_view text, TextForm form) {
    return form != TextForm::Bytes && (text.starts_with("\xFE\xFF") || text.starts_with("\xFF\xFE"));
}

char Narrowed(unsigned unit) {
    if (unit >= 0x100) return 'x';  // a name or text character; the markup is ASCII
    const bool control = (unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r') || unit == 0x7F;
    return control ? ' ' : static_cast<char>(unit);
}

// One byte per unit. The toolkit converts UTF-16 without the repairs it
// makes to bytes; spaces for control characters only make the guard read on.
void NarrowUtf16(std::string_view chunk, bool little, std::string& narrowed) {
    narrowed.resize(chunk.size() / 2);
    for (std::size_t i = 0; i < narrowed.size(); ++i) {
        const auto low = static_cast<unsigned char>(chunk[2 * i + (little ? 0 : 1)]);
        const auto high = static_cast<unsigned char>(chunk[2 * i + (little ? 1 : 0)]);
        narrowed[i] = Narrowed(low | (high << 8u));
    }
}

bool IsArrayItem(const XML_Char* name, const XML_Char** attributes) {
    if (std::strcmp(name, "rdf:li") != 0) return false;
    // Items that rebind their own prefix would be distinct named properties.
    for (const XML_Char** attribute = attributes; *attribute != nullptr; attribute += 2) {
        if (std::strcmp(*attribute, "xmlns:rdf") == 0) return false;
    }
    return true;
}

std::uint64_t CountAttributes(const XML_Char** attributes) {
    std::uint64_t count = 0;
    while (attributes[2 * count] != nullptr) ++count;
    return count;
}

// The toolkit writes rdf:about and namespace URIs back without escaping them,
// so one holding markup characters would be saved as a packet nothing can read
// (and a namespace stays registered for the whole process).
bool HasUnwritableAttribute(const XML_Char** attributes) {
    for (const XML_Char** attribute = attributes; *attribute != nullptr; attribute += 2) {
        const std::string_view name = attribute[0];
        if ((name.ends_with(":about") || name.starts_with("xmlns")) && std::strpbrk(attribute[1], "\"<&") != nullptr)
            return true;
    }
    return false;
}

std::string Exceeded(std::string_view what, std::uint64_t limit, std::string_view member) {
    std::string text(what);
    text.append(" exceed the limit of ").append(std::to_string(limit));
    text.append(" (XMP_PacketLimits::").append(member).append(")");
    return text;
}

// One streaming pass over one packet, up to the end of its root element.
class LimitScan {
public:
    explicit LimitScan(TextForm form)
        : m_form(form), m_parser(XML_ParserCreate(form == TextForm::Bytes ? "UTF-8" : "ISO-8859-1")) {
        if (m_parser == nullptr) throw std::bad_alloc();
        XML_SetUserData(m_parser, this);
        XML_SetElementHandler(m_parser, &LimitScan::OnStart, &LimitScan::OnEnd);
        m_levels.reserve(64);
    }
    ~LimitScan() { XML_ParserFree(m_parser); }
    LimitScan(const LimitScan&) = delete;
    LimitScan& operator=(const LimitScan&) = delete;

    // The bytes read: up to the root element's end, the first malformed
    // markup or a breach; never zero, so a caller searching on moves on.
    std::size_t Run(std::string_view text) {
        if (m_form == TextForm::Bytes) return FeedBytes(text);
        const std::size_t mark = HasByteOrderMark(text, m_form) ? 2 : 0;
        return mark + FeedUtf16(text.substr(mark), m_form == TextForm::Utf16LE);
    }

    const std::optional<Breach>& GetBreach() const { return m_breach; }

private:
    // Where parsing ended, as an offset into the bytes; npos for unknown.
    std::size_t StoppedAt() const {
        const XML_Index at = XML_GetCurrentByteIndex(m_parser);
        return at < 0 ? std::string_view::npos : static_cast<std::size_t>(at);
    }

    // False once parsing ended: an XML error, a breach or the root's end.
    bool Parse(std::string_view piece, bool last) {
        const XML_Status status =
            XML_Parse(m_parser, piece.data(), static_cast<int>(piece.size()), last ? XML_TRUE : XML_FALSE);
        return status == XML_STATUS_OK && !m_stopped;
    }

    bool PastSizeLimit(std::size_t offset) {
        if (offset < Limits::kMaxPacketBytes) return false;
        Stop(Exceeded("packet bytes", Limits::kMaxPacketBytes, "kMaxPacketBytes"));
        return true;
    }

    // A stretch given to expat: where it starts in what expat was fed, and in the bytes.
    struct Piece {
        std::size_t fed;
        std::size_t offset;
    };

    // Unchanged stretches go to expat as they are, converted ones in small
    // pieces whose length changes map expat's offsets back to the bytes.
    std::size_t FeedBytes(std::string_view text) {
        std::string converted;
        std::vector<TextChange> changes;
        std::vector<Piece> pieces;
        std::size_t offset = 0;
        std::size_t fed = 0;
        while (!PastSizeLimit(offset)) {
            const std::size_t changed = FindChangedByte(text, offset, std::min(offset + kChunkBytes, text.size()));
            std::string_view piece;
            std::size_t next = changed;
            if (changed > offset) {
                piece = text.substr(offset, changed - offset);
                changes.clear();
            } else {
                next = ConvertAsToolkitReads(text, offset, kConvertedPieceBytes, converted, changes);
                piece = converted;
            }
            pieces.push_back({fed, offset});
            const bool last = next >= text.size();
            if (!Parse(piece, last)) return std::max<std::size_t>(1, BytesRead(text, pieces, changes));
            if (last) return std::max<std::size_t>(1, next);
            fed += piece.size();
            offset = next;
        }
        return offset;
    }

    // Where expat stopped, in the bytes. An event that began in an earlier
    // piece counts from that piece's start: never past where it really was.
    std::size_t BytesRead(std::string_view text, const std::vector<Piece>& pieces,
                          const std::vector<TextChange>& changes) const {
        const std::size_t at = StoppedAt();
        if (at == std::string_view::npos) return text.size();
        const auto after = std::upper_bound(pieces.begin(), pieces.end(), at,
                                            [](std::size_t index, const Piece& piece) { return index < piece.fed; });
        if (after == pieces.begin()) return 0;
        const Piece& piece = *std::prev(after);
        if (after != pieces.end()) return piece.offset;
        return piece.offset + OriginalOffset(changes, at - piece.fed);
    }

    std::size_t FeedUtf16(std::string_view text, bool little) {
        const std::size_t usable = text.size() - text.size() % 2;
        std::string narrowed;
        std::size_t offset = 0;
        while (!PastSizeLimit(offset)) {
            const std::size_t end = std::min(offset + kChunkBytes, usable);
            NarrowUtf16(text.substr(offset, end - offset), little, narrowed);
            const bool last = end == usable;
            if (!Parse(narrowed, last)) {
                const std::size_t at = StoppedAt();
                return std::max<std::size_t>(2, at == std::string_view::npos ? usable : 2 * at);
            }
            offset = end;
            if (last) return std::max<std::size_t>(2, offset);
        }
        return offset;
    }

    void Stop(std::string what) {
        m_breach = Breach{std::move(what), static_cast<std::uint64_t>(XML_GetCurrentLineNumber(m_parser))};
        Halt();
    }

    void Halt() {
        m_stopped = true;
        XML_StopParser(m_parser, XML_FALSE);
    }

    // Expat may still report the end of an empty element after a stop.
    void Start(const XML_Char* name, const XML_Char** attributes) {
        if (m_stopped) return;
        if (m_levels.size() >= Limits::kMaxNestingDepth)
            return Stop(Exceeded("element levels", Limits::kMaxNestingDepth, "kMaxNestingDepth"));
        const std::uint64_t attributeCount = CountAttributes(attributes);
        if (attributeCount > Limits::kMaxAttributes)
            return Stop(Exceeded("attributes of one element", Limits::kMaxAttributes, "kMaxAttributes"));
        if (attributeCount > 0 && !AddNamespaces(attributes))
            return Stop(Exceeded("namespace URIs declared", Limits::kMaxNamespaces, "kMaxNamespaces"));
        if (attributeCount > 0 && HasUnwritableAttribute(attributes))
            return Stop("an rdf:about value or namespace URI with '\"', '<' or '&', which could not be written back,");
        const bool named = !IsArrayItem(name, attributes);
        if (!m_levels.empty()) {
            if (++m_levels.back().m_children > Limits::kMaxChildren)
                return Stop(Exceeded("children of one element", Limits::kMaxChildren, "kMaxChildren"));
            if (named && !AddNamedToInnermost(1)) return;
        }
        m_levels.push_back(Level{0, 0, 0, named});
        AddNamedToInnermost(attributeCount);  // attributes of an element become its fields
    }

    // False past the limit of distinct URIs.
    bool AddNamespaces(const XML_Char** attributes) {
        for (const XML_Char** attribute = attributes; *attribute != nullptr; attribute += 2) {
            if (std::strncmp(*attribute, "xmlns", 5) == 0 && *attribute[1] != '\0') m_namespaces.emplace(attribute[1]);
        }
        return m_namespaces.size() <= Limits::kMaxNamespaces;
    }

    bool AddNamedToInnermost(std::uint64_t count) {
        Level& level = m_levels.back();
        level.m_named += count;
        if (level.m_named > Limits::kMaxNamedChildren) {
            Stop(Exceeded("named children of one element", Limits::kMaxNamedChildren, "kMaxNamedChildren"));
            return false;
        }
        if (!level.m_isNamed || m_levels.size() < 2) return true;
        Level& parent = m_levels[m_levels.size() - 2];
        parent.m_namedGrandchildren += count;
        if (parent.m_namedGrandchildren > Limits::kMaxNamedChildren) {
            Stop(Exceeded("named children of one element's named children", Limits::kMaxNamedChildren,
                          "kMaxNamedChildren"));
            return false;
        }
        return true;
    }

    void End() {
        if (m_stopped) return;
        m_levels.pop_back();
        if (m_levels.empty()) Halt();  // the root is complete; what follows is not this packet
    }

    static void XMLCALL OnStart(void* self, const XML_Char* name, const XML_Char** attributes) {
        static_cast<LimitScan*>(self)->Start(name, attributes);
    }
    static void XMLCALL OnEnd(void* self, const XML_Char*) { static_cast<LimitScan*>(self)->End(); }

    TextForm m_form;
    XML_Parser m_parser;
    std::vector<Level> m_levels;
    std::optional<Breach> m_breach;
    std::unordered_set<std::string> m_namespaces;
    bool m_stopped = false;
};

std::size_t GuardOne(std::string_view text, std::string_view operation, std::string_view path, std::string_view where,
                     int errorId) {
    LimitScan scan(DetectForm(text));
    const std::size_t read = scan.Run(text);
    if (const auto& breach = scan.GetBreach()) {
        std::string detail = breach->m_what;
        detail.append(" at line ").append(std::to_string(breach->m_line)).append(where);
        RaiseError(errorId, operation, path, detail);
    }
    return read;
}

// The first of `starts` at or after `from`. Each holds one '<', found with
// memchr: media files are large, and most hold few of them.
template <std::size_t kCount>
std::optional<std::size_t> NextPacketStart(std::string_view bytes, std::size_t from,
                                           const std::array<std::string, kCount>& starts) {
    for (std::size_t scan = from; scan < bytes.size();) {
        const void* found = std::memchr(bytes.data() + scan, '<', bytes.size() - scan);
        if (found == nullptr) return std::nullopt;
        const std::size_t angle = static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data());
        // Text that reads as UTF-16 both ways starts where its first byte is.
        std::optional<std::size_t> first;
        for (const std::string& start : starts) {
            const std::size_t lead = start.find('<');
            if (angle >= from + lead && bytes.substr(angle - lead).starts_with(start))
                first = std::min(first.value_or(angle), angle - lead);
        }
        if (first) return first;
        scan = angle + 1;
    }
    return std::nullopt;
}

std::string Utf16(std::string_view ascii, bool little) {
    std::string wide;
    for (char c : ascii) {
        if (!little) wide.push_back('\0');
        wide.push_back(c);
        if (little) wide.push_back('\0');
    }
    return wide;
}

}  // namespace

void GuardPacket(std::string_view packet, std::string_view operation, int errorId) {
    constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
    if (packet.starts_with(kUtf8Mark)) packet.remove_prefix(kUtf8Mark.size());
    if (packet.size() > Limits::kMaxPacketBytes)
        RaiseError(errorId, operation, "", Exceeded("packet bytes", Limits::kMaxPacketBytes, "kMaxPacketBytes"));
    GuardOne(packet, operation, "", "", errorId);
}

void GuardEmbeddedPackets(std::string_view fileBytes, std::string_view operation, std::string_view path) {
    constexpr std::string_view kHeader = "<?xpacket begin";
    static const std::array<std::string, 5> kStarts = {std::string(kHeader), "<x:xmpmeta", "<rdf:RDF",
                                                       Utf16(kHeader, true), Utf16(kHeader, false)};
    std::size_t at = 0;
    while (const std::optional<std::size_t> start = NextPacketStart(fileBytes, at, kStarts)) {
        const std::string where = " of the packet at byte " + std::to_string(*start);
        at = *start + GuardOne(fileBytes.substr(*start), operation, path, where, kXMPErr_BadXML);
    }
    // Only the JPEG handler puts packets together out of pieces.
    if (!fileBytes.starts_with("\xFF\xD8")) return;
    for (const ExtendedXmp& extended : FindExtendedXmp(fileBytes)) {
        const std::string where = " of the extended XMP in segments from byte " + std::to_string(extended.firstSegment);
        // The toolkit may piece such a packet together otherwise than read here.
        if (!extended.piecesTile)
            RaiseError(kXMPErr_BadJPEG, operation, path,
                       "extended XMP in pieces that overlap, repeat or leave gaps" + where);
        if (extended.text.size() > Limits::kMaxPacketBytes)
            RaiseError(kXMPErr_BadXML, operation, path,
                       Exceeded("packet bytes", Limits::kMaxPacketBytes, "kMaxPacketBytes") + where);
        GuardOne(extended.text, operation, path, where, kXMPErr_BadXML);
    }
}

}  // namespace xmptoolkit_detail
