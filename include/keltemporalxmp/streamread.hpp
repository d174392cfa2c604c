#pragma once
// Reading a packet's text straight into records, without the toolkit's tree:
// the same tracks XMPDocOpsTemporal gives for the parsed packet, and the same
// collection and ingredient list, much faster and in little memory. Where the text holds anything this reader cannot
// map with certainty (or that the toolkit refuses), it says so, and the caller parses the packet with the toolkit
// instead: the answer is always the toolkit's answer.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <keltemporalxmp/collector.hpp>
#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/export.hpp>
#include <keltemporalxmp/records.hpp>

namespace keltemporalxmp {

// The track list of one packet, fed piece by piece as its bytes arrive.
class KELTXMP_API PacketTrackReader {
public:
    PacketTrackReader();
    ~PacketTrackReader();
    PacketTrackReader(const PacketTrackReader&) = delete;
    PacketTrackReader& operator=(const PacketTrackReader&) = delete;

    // False once the packet must go to the toolkit; the rest need not be fed.
    bool Feed(std::string_view text);
    // After the last piece: false when the packet must go to the toolkit;
    // otherwise appends the tracks. Raises what the toolkit path raises for
    // the same packet (XMP_Error for a time no rate can convert, the keyword
    // exceptions of CuePointToKeyword).
    bool Finish(std::vector<XMPTrack>& tracks);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

// The whole packet at once.
KELTXMP_API bool StreamReadTracks(std::string_view packet, std::vector<XMPTrack>& tracks);

// The packet's own document and the documents of its xmpMM:Pantry, from one
// pass over its text fed piece by piece: what the collector and the
// ingredient list need of them.
class KELTXMP_API PacketDocumentReader {
public:
    PacketDocumentReader();
    ~PacketDocumentReader();
    PacketDocumentReader(const PacketDocumentReader&) = delete;
    PacketDocumentReader& operator=(const PacketDocumentReader&) = delete;

    // False once the packet must go to the toolkit; the rest need not be fed.
    bool Feed(std::string_view text);
    // After the last piece: false when the packet must go to the toolkit.
    // Raises nothing: a document whose tracks cannot be read fails only the
    // collections that need its markers, as on the toolkit path.
    bool Finish();

    // Only after Finish returned true (else XMP_Error kXMPErr_BadParam).
    // Collects what XMPTemporalMetadataCollector(mask, xmp, rangeStart,
    // rangeDuration, maxRecords) collects from the parsed packet into
    // `collection`, raising what it raises.
    void Collect(unsigned char mask, std::int64_t rangeStart, std::int64_t rangeDuration, std::size_t maxRecords,
                 XMPTemporalMetadataCollector::Collection& collection);
    // The ingredient list XMPDocOpsTemporal keeps for the parsed packet.
    void Ingredients(XMPDocOpsTemporal::IngredientList& ingredients) const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

// One item of a packet's xmpMM:Pantry as the document
// ExtractXMPMetaFromPantry makes of it.
struct PantryItemDocument {
    int item = 0;  // from 1, counting items of every form
    std::string instanceID;
    std::string documentID;
    std::vector<XMPTrack> tracks;  // as XMPDocOpsTemporal reads them
    int ingredients = 0;           // items of its xmpMM:Ingredients
};

// The documents of a packet's pantry, from one pass over its text fed piece
// by piece.
class KELTXMP_API PacketPantryReader {
public:
    PacketPantryReader();
    ~PacketPantryReader();
    PacketPantryReader(const PacketPantryReader&) = delete;
    PacketPantryReader& operator=(const PacketPantryReader&) = delete;

    // False once the packet must go to the toolkit; the rest need not be fed.
    bool Feed(std::string_view text);
    // After the last piece: false when the packet must go to the toolkit,
    // which it must also when extracting or reading an item would raise
    // (the pantry or an item's ingredients no list, an item that is a list, a
    // track list that cannot be read). Otherwise appends the items in order.
    bool Finish(std::vector<PantryItemDocument>& items);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

// The whole packet at once: false when it must go to the toolkit; otherwise
// collects as PacketDocumentReader::Collect does.
KELTXMP_API bool StreamCollect(std::string_view packet, unsigned char mask, std::int64_t rangeStart,
                               std::int64_t rangeDuration, std::size_t maxRecords,
                               XMPTemporalMetadataCollector::Collection& collection);

}  // namespace keltemporalxmp
