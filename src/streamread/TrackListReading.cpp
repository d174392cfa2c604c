#include "streamread/TrackListReading.hpp"

#include <utility>

#include "docops/TrackLayout.hpp"

namespace keltemporalxmp::streamread {

TrackListReading::TrackListReading(std::string tracksPath, docops::KeywordCuePoints keywords)
    : m_tracksPath(std::move(tracksPath)), m_keywords(keywords) {}

bool TrackListReading::Start(XMP_OptionBits options) {
    if (!docops::TrackListAssembler::IsTrackArray(options)) {
        return false;
    }
    m_assembler = std::make_unique<docops::TrackListAssembler>(m_tracksPath, m_tracks, m_keywords);
    return true;
}

bool TrackListReading::Take(const TreeNode& node, std::string& value) {
    if (!m_assembler || m_failure) {
        return false;
    }
    try {
        return m_assembler->Take(node, value);
    } catch (...) {
        m_failure = std::current_exception();
        return false;
    }
}

void TrackListReading::Finish() {
    if (!m_assembler) {
        return;
    }
    if (!m_failure) {
        try {
            m_assembler->Finish();
        } catch (...) {
            m_failure = std::current_exception();
        }
    }
    m_assembler.reset();
}

std::vector<XMPTrack>& TrackListReading::Tracks() {
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
    return m_tracks;
}

TrackListSink::TrackListSink(docops::KeywordCuePoints keywords) : m_reading(docops::kTracksPath, keywords) {}

bool TrackListSink::Take(const TreeNode& node, std::string& value) {
    if (node.depth == 0) {
        if (m_inList) {
            m_reading.Finish();
        }
        m_inList = node.name == docops::kTracksPath && m_reading.Start(node.options);
        return m_inList;
    }
    return m_reading.Take(node, value);
}

}  // namespace keltemporalxmp::streamread
