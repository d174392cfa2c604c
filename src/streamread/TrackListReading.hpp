#pragma once
// One document's track list as the walk hands over its nodes. What reading
// it raises is kept, not thrown: it is known to be the toolkit's answer only
// once the whole packet is, and it matters only to whoever asks for these
// tracks.

#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "docops/TrackListAssembly.hpp"
#include "streamread/RdfWalk.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] streamread {

class TrackListReading {
public:
    // tracksPath names the list in messages, as the toolkit's path does.
    TrackListReading(std::string tracksPath, docops::KeywordCuePoints keywords);
    TrackListReading(const TrackListReading&) = delete;
    TrackListReading& operator=(const TrackListReading&) = delete;

    // The list's own node (depth 0); false when it is no array.
    bool Start(XMP_OptionBits options);
    // A node below it, depth counted from the list.
    bool Take(const TreeNode& node, std::string& value);
    // After the list's last node.
    void Finish();

    // The tracks, or what reading them raised.
    std::vector<XMPTrack>& Tracks();
    bool Failed() const { return m_failure != nullptr; }

private:
    std::string m_tracksPath;
    docops::KeywordCuePoints m_keywords;
    std::vector<XMPTrack> m_tracks;
    // Only while the list is read: a pantry can hold many documents.
    std::unique_ptr<docops::TrackListAssembler> m_assembler;
    std::exception_ptr m_failure;
};

// The track list of the packet's own document, read on its own.
class TrackListSink final : public NodeSink {
public:
    explicit TrackListSink(docops::KeywordCuePoints keywords);

    bool Take(const TreeNode& node, std::string& value) override;
    TrackListReading& Reading() { return m_reading; }

private:
    TrackListReading m_reading;
    bool m_inList = false;
};

}  // namespace streamread
}  // namespace keltemporalxmp
