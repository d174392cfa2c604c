#include <keltemporalxmp/streamread.hpp>

#include <iterator>

#include "streamread/PacketParser.hpp"
#include "streamread/RdfWalk.hpp"
#include "streamread/TrackListReading.hpp"

namespace keltemporalxmp {

struct [[gnu::visibility("hidden")]] PacketTrackReader::State {
    streamread::TrackListSink sink{docops::KeywordCuePoints::kToKeywords};
    streamread::RdfWalk walk{sink};
    streamread::PacketParser parser{walk};
};

PacketTrackReader::PacketTrackReader() : m_state(std::make_unique<State>()) {}

PacketTrackReader::~PacketTrackReader() = default;

bool PacketTrackReader::Feed(std::string_view text) {
    return m_state->parser.Feed(text, false);
}

bool PacketTrackReader::Finish(std::vector<XMPTrack>& tracks) {
    if (!m_state->parser.Feed({}, true)) {
        return false;
    }
    m_state->walk.Finish();
    if (m_state->walk.GaveUp()) {
        return false;
    }
    streamread::TrackListReading& reading = m_state->sink.Reading();
    reading.Finish();
    std::vector<XMPTrack>& read = reading.Tracks();
    tracks.insert(tracks.end(), std::make_move_iterator(read.begin()), std::make_move_iterator(read.end()));
    return true;
}

bool StreamReadTracks(std::string_view packet, std::vector<XMPTrack>& tracks) {
    PacketTrackReader reader;
    return reader.Feed(packet) && reader.Finish(tracks);
}

}  // namespace keltemporalxmp
