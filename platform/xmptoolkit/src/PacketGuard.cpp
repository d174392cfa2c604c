#include "PacketGuard.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <optional>
#include <random>
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
// The first copied piece of a scan: in a media file most scans start on a
// '<' among binary bytes and end a few bytes on, so pieces start small and grow.
constexpr std::size_t kFirstCopiedPieceBytes = 32;
// How far a scan in a media file first looks for a byte to convert. Many
// scans end a few bytes on, so the reach starts small and grows fourfold with
// each piece: a scan looks at a few times what it reads, and the many scans of
// one file stay within the bound on what they read.
constexpr std::size_t kFirstReachInMediaBytes = 32;
constexpr std::size_t kReachGrowth = 4;
// How often, on average, a media file's bytes may be read again because
// markup hides in what an earlier scan read as comments or CDATA; a small
// file may be read up to the allowance besides.
constexpr std::uint64_t kRereadFactor = 16;
constexpr std::uint64_t kRereadAllowanceBytes = std::uint64_t{1} << 20;

struct Breach {
    std::string m_what;
    std::uint64_t m_line = 0;
};

// A stretch of the bytes, [m_begin, m_end).
struct Span {
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
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

// Expat draws a fresh hash salt from the system for every parse; one secret
// salt for the process keeps its tables as safe from crafted names, without a
// system call for each of the many short scans of a media file.
unsigned long ProcessHashSalt() {
    static const unsigned long salt = [] {
        std::random_device entropy;
        return (static_cast<unsigned long>(entropy()) << 32) ^ entropy();
    }();
    return salt;
}

// One streaming pass over one packet, up to the end of its root element.
class LimitScan {
public:
    // `firstReachBytes`: how far the first unconverted piece may reach.
    explicit LimitScan(std::size_t firstReachBytes)
        : m_parser(XML_ParserCreate(nullptr)), m_firstReachBytes(firstReachBytes) {
        if (m_parser == nullptr) throw std::bad_alloc();
        m_levels.reserve(64);
    }
    ~LimitScan() { XML_ParserFree(m_parser); }
    LimitScan(const LimitScan&) = delete;
    LimitScan& operator=(const LimitScan&) = delete;

    // The bytes read: up to the root element's end, the first malformed
    // markup or a breach; never zero, so a caller searching on moves on.
    // One scan may run many times.
    std::size_t Run(std::string_view text, TextForm form) {
        Reset(form);
        std::size_t read = 0;
        if (m_form == TextForm::Bytes) {
            read = FeedBytes(text);
        } else {
            m_utf16Mark = HasByteOrderMark(text, m_form) ? 2 : 0;
            read = m_utf16Mark + FeedUtf16(text.substr(m_utf16Mark), m_form == TextForm::Utf16LE);
        }
        if (m_openSpan) m_spans.push_back({*m_openSpan, read});  // a CDATA section or DOCTYPE never closed
        return read;
    }

    const std::optional<Breach>& GetBreach() const { return m_breach; }
    // What the last run read as comments, CDATA, processing instructions or
    // a DOCTYPE, in offsets of its text: markup may hide in them.
    const std::vector<Span>& OpaqueSpans() const { return m_spans; }

private:
    void Reset(TextForm form) {
        m_form = form;
        if (!XML_ParserReset(m_parser, form == TextForm::Bytes ? "UTF-8" : "ISO-8859-1")) throw std::bad_alloc();
        XML_SetHashSalt(m_parser, ProcessHashSalt());
        XML_SetUserData(m_parser, this);
        XML_SetElementHandler(m_parser, &LimitScan::OnStart, &LimitScan::OnEnd);
        XML_SetCommentHandler(m_parser, &LimitScan::OnComment);
        XML_SetProcessingInstructionHandler(m_parser, &LimitScan::OnInstruction);
        XML_SetCdataSectionHandler(m_parser, &LimitScan::OnCdataStart, &LimitScan::OnCdataEnd);
        XML_SetDoctypeDeclHandler(m_parser, &LimitScan::OnDoctypeStart, &LimitScan::OnDoctypeEnd);
        m_levels.clear();
        m_breach.reset();
        m_namespaces.clear();
        m_stopped = false;
        m_spans.clear();
        m_pieces.clear();
        m_changes.clear();
        m_utf16Mark = 0;
        m_openSpan.reset();
    }

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

    // A stretch given to expat: where it starts in what expat was fed and in
    // the bytes, and whether it was copied with changes.
    struct Piece {
        std::size_t fed;
        std::size_t offset;
        bool converted;
    };

    // Unchanged stretches go to expat as they are, converted ones in small
    // pieces whose length changes map expat's offsets back to the bytes.
    std::size_t FeedBytes(std::string_view text) {
        std::string converted;
        std::size_t offset = 0;
        std::size_t fed = 0;
        std::size_t reach = m_firstReachBytes;
        std::size_t budget = kFirstCopiedPieceBytes;
        while (!PastSizeLimit(offset)) {
            const std::size_t changed = FindChangedByte(text, offset, std::min(offset + reach, text.size()));
            reach = std::min(kReachGrowth * reach, kChunkBytes);
            std::string_view piece;
            std::size_t next = changed;
            const bool convert = changed == offset;
            if (convert) {
                next = ConvertAsToolkitReads(text, offset, budget, converted, m_changes);
                budget = std::min(2 * budget, kConvertedPieceBytes);
                piece = converted;
            } else {
                piece = text.substr(offset, changed - offset);
                m_changes.clear();
            }
            m_pieces.push_back({fed, offset, convert});
            const bool last = next >= text.size();
            if (!Parse(piece, last)) return std::max<std::size_t>(1, BytesRead(text));
            if (last) return std::max<std::size_t>(1, next);
            fed += piece.size();
            offset = next;
        }
        return offset;
    }

    // Where expat stopped, in the bytes.
    std::size_t BytesRead(std::string_view text) const {
        const std::size_t at = StoppedAt();
        return at == std::string_view::npos ? text.size() : Original(at, false);
    }

    // Offset `at` of what expat was fed, in the bytes. Inside a copied piece
    // other than the last, the piece's start, or with `roundUp` its end: never
    // past (or short of) where it really was.
    std::size_t Original(std::size_t at, bool roundUp) const {
        if (m_form != TextForm::Bytes) return m_utf16Mark + 2 * at;
        const auto after = std::upper_bound(m_pieces.begin(), m_pieces.end(), at,
                                            [](std::size_t index, const Piece& piece) { return index < piece.fed; });
        if (after == m_pieces.begin()) return 0;
        const Piece& piece = *std::prev(after);
        if (!piece.converted) return piece.offset + (at - piece.fed);
        if (after == m_pieces.end()) return piece.offset + OriginalOffset(m_changes, at - piece.fed);
        return roundUp ? after->offset : piece.offset;
    }

    std::size_t FeedUtf16(std::string_view text, bool little) {
        const std::size_t usable = text.size() - text.size() % 2;
        std::string narrowed;
        std::size_t offset = 0;
        std::size_t budget = kFirstCopiedPieceBytes;
        while (!PastSizeLimit(offset)) {
            const std::size_t end = std::min(offset + budget, usable);
            budget = std::min(2 * budget, kChunkBytes);
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

    // The event at hand, from its first byte to its last.
    void AddEventSpan() {
        const XML_Index at = XML_GetCurrentByteIndex(m_parser);
        if (at < 0) return;
        const auto begin = static_cast<std::size_t>(at);
        m_spans.push_back({Original(begin, false), Original(begin + XML_GetCurrentByteCount(m_parser), true)});
    }
    void OpenSpan() {
        const XML_Index at = XML_GetCurrentByteIndex(m_parser);
        if (at >= 0) m_openSpan = Original(static_cast<std::size_t>(at), false);
    }
    void CloseSpan() {
        const XML_Index at = XML_GetCurrentByteIndex(m_parser);
        if (!m_openSpan || at < 0) return;
        const auto end = static_cast<std::size_t>(at) + XML_GetCurrentByteCount(m_parser);
        m_spans.push_back({*m_openSpan, Original(end, true)});
        m_openSpan.reset();
    }

    static void XMLCALL OnStart(void* self, const XML_Char* name, const XML_Char** attributes) {
        static_cast<LimitScan*>(self)->Start(name, attributes);
    }
    static void XMLCALL OnEnd(void* self, const XML_Char*) { static_cast<LimitScan*>(self)->End(); }
    static void XMLCALL OnComment(void* self, const XML_Char*) { static_cast<LimitScan*>(self)->AddEventSpan(); }
    static void XMLCALL OnInstruction(void* self, const XML_Char*, const XML_Char*) {
        static_cast<LimitScan*>(self)->AddEventSpan();
    }
    static void XMLCALL OnCdataStart(void* self) { static_cast<LimitScan*>(self)->OpenSpan(); }
    static void XMLCALL OnCdataEnd(void* self) { static_cast<LimitScan*>(self)->CloseSpan(); }
    static void XMLCALL OnDoctypeStart(void* self, const XML_Char*, const XML_Char*, const XML_Char*, int) {
        static_cast<LimitScan*>(self)->OpenSpan();
    }
    static void XMLCALL OnDoctypeEnd(void* self) { static_cast<LimitScan*>(self)->CloseSpan(); }

    TextForm m_form = TextForm::Bytes;
    XML_Parser m_parser;
    std::size_t m_firstReachBytes;
    std::vector<Level> m_levels;
    std::optional<Breach> m_breach;
    std::unordered_set<std::string> m_namespaces;
    bool m_stopped = false;
    std::vector<Span> m_spans;
    std::optional<std::size_t> m_openSpan;  // a CDATA section or DOCTYPE begun
    std::vector<Piece> m_pieces;
    std::vector<TextChange> m_changes;  // of the last piece, when copied
    std::size_t m_utf16Mark = 0;
};

std::size_t GuardOne(LimitScan& scan, std::string_view text, TextForm form, std::string_view operation,
                     std::string_view path, std::string_view where, int errorId) {
    const std::size_t read = scan.Run(text, form);
    if (const auto& breach = scan.GetBreach()) {
        std::string detail = breach->m_what;
        detail.append(" at line ").append(std::to_string(breach->m_line)).append(where);
        RaiseError(errorId, operation, path, detail);
    }
    return read;
}

bool StartsName(unsigned unit) {
    return unit >= 0x80 || unit == '_' || unit == ':' || (unit | 0x20) - 'a' < 26;
}

// A '<' that may start a start tag, and the forms it may be read in: bytes,
// or UTF-16 either way round (big-endian starting one byte earlier).
struct MarkupStart {
    std::size_t angle = 0;
    std::vector<TextForm> forms;
};

// The first possible start tag at or after `from` and before `to`: any may be
// where a file handler's packet begins. Found with memchr: media files are
// large, and most hold few '<'.
std::optional<MarkupStart> NextMarkupStart(std::string_view bytes, std::size_t from, std::size_t to) {
    auto at = [&](std::size_t index) { return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0u; };
    for (std::size_t scan = from; scan < to;) {
        const void* found = std::memchr(bytes.data() + scan, '<', to - scan);
        if (found == nullptr) return std::nullopt;
        MarkupStart start{static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data()), {}};
        const std::size_t angle = start.angle;
        if (StartsName(at(angle + 1))) start.forms.push_back(TextForm::Bytes);
        if (at(angle + 1) == 0 && StartsName(at(angle + 2) | (at(angle + 3) << 8)))
            start.forms.push_back(TextForm::Utf16LE);
        if (angle > 0 && at(angle - 1) == 0 && StartsName((at(angle + 1) << 8) | at(angle + 2)))
            start.forms.push_back(TextForm::Utf16BE);
        if (!start.forms.empty()) return start;
        scan = angle + 1;
    }
    return std::nullopt;
}

}  // namespace

void GuardPacket(std::string_view packet, std::string_view operation, int errorId) {
    constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
    if (packet.starts_with(kUtf8Mark)) packet.remove_prefix(kUtf8Mark.size());
    if (packet.size() > Limits::kMaxPacketBytes)
        RaiseError(errorId, operation, "", Exceeded("packet bytes", Limits::kMaxPacketBytes, "kMaxPacketBytes"));
    LimitScan scan(kChunkBytes);
    GuardOne(scan, packet, DetectForm(packet), operation, "", "", errorId);
}

void GuardEmbeddedPackets(std::string_view fileBytes, std::string_view operation, std::string_view path) {
    LimitScan scan(kFirstReachInMediaBytes);
    // Stretches still to search. A scan skips what it read, but searches
    // again what it read as comments, CDATA and the like: a handler may start
    // a packet there. Overlapping text is read again, within a bound.
    std::vector<Span> pending{{0, fileBytes.size()}};
    const std::uint64_t readBound = kRereadFactor * static_cast<std::uint64_t>(fileBytes.size()) + kRereadAllowanceBytes;
    std::uint64_t readTotal = 0;
    while (!pending.empty()) {
        const Span stretch = pending.back();
        pending.pop_back();
        const std::optional<MarkupStart> start = NextMarkupStart(fileBytes, stretch.m_begin, stretch.m_end);
        if (!start) continue;
        // Only what every reading took for markup is skipped.
        std::size_t resume = fileBytes.size();
        for (const TextForm form : start->forms) {
            const std::size_t offset = start->angle - (form == TextForm::Utf16BE ? 1 : 0);
            const std::string where = " of the packet at byte " + std::to_string(offset);
            const std::size_t read =
                GuardOne(scan, fileBytes.substr(offset), form, operation, path, where, kXMPErr_BadXML);
            readTotal += read;
            if (readTotal > readBound)
                RaiseError(kXMPErr_BadXML, operation, path,
                           "markup that overlaps itself more often than the guard reads it again, up to byte " +
                               std::to_string(offset + read));
            resume = std::min(resume, std::max(offset + read, start->angle + 1));
            const std::vector<Span>& spans = scan.OpaqueSpans();
            for (auto span = spans.rbegin(); span != spans.rend(); ++span) {
                const std::size_t begin = std::max(offset + span->m_begin, start->angle + 1);
                const std::size_t end = std::min(offset + span->m_end, fileBytes.size());
                if (begin < end) pending.push_back({begin, end});
            }
        }
        if (resume < stretch.m_end) pending.push_back({resume, stretch.m_end});
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
        GuardOne(scan, extended.text, DetectForm(extended.text), operation, path, where, kXMPErr_BadXML);
    }
}

}  // namespace xmptoolkit_detail
