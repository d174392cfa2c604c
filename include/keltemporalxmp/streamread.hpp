#pragma once
// Reading a packet's text straight into records, without the toolkit's tree:
// the same tracks XMPDocOpsTemporal gives for the parsed packet, much faster
// and in little memory. Where the text holds anything this reader cannot map
// with certainty (or that the toolkit refuses), it says so, and the caller
// parses the packet with the toolkit instead: the answer is always the
// toolkit's answer.

#include <memory>
#include <string_view>
#include <vector>

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

}  // namespace keltemporalxmp
