#include "PacketReading.hpp"

#include <sys/stat.h>

#include <cstdio>
#include <iterator>
#include <memory>

#include <keltemporalxmp/streamread.hpp>

#include "Documents.hpp"
#include "FileReport.hpp"

namespace keltemporalxmp::tool {
namespace {

constexpr std::size_t kReadBytes = std::size_t{1} << 20;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// A sidecar's packet read as it streams in. False when the toolkit must read
// the file: not a regular file (a FIFO would be read twice), unreadable (the
// toolkit's message is the one to give), or beyond the streaming reader.
bool StreamTracks(const std::string& path, std::vector<XMPTrack>& tracks) {
    struct stat status {};
    if (!IsSidecar(path) || ::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) {
        return false;
    }
    PacketTrackReader reader;
    std::vector<char> buffer(kReadBytes);
    while (true) {
        const std::size_t read = std::fread(buffer.data(), 1, buffer.size(), file.get());
        if (read == 0) {
            break;
        }
        if (!reader.Feed({buffer.data(), read})) {
            return false;
        }
    }
    return std::ferror(file.get()) == 0 && reader.Finish(tracks);
}

std::vector<XMPTrack> ToolkitTracks(const std::string& path) {
    SXMPMeta meta = ReadDocument(path);
    const std::unique_ptr<XMPDocOpsTemporal> document = OpenTemporalDocument(meta);
    return {std::make_move_iterator(document->TrackListIteratorBegin()),
            std::make_move_iterator(document->TrackListIteratorEnd())};
}

}  // namespace

void AddReaderOption(CLI::App& command, ReaderChoice& reader) {
    command
        .add_option_function<std::string>(
            "--reader",
            [&reader](const std::string& name) {
                reader = name == "toolkit" ? ReaderChoice::kToolkit : ReaderChoice::kFast;
            },
            "fast (the default): read the packet's text directly, through the XMP toolkit wherever that "
            "reader cannot answer; toolkit: through the XMP toolkit only")
        ->check(CLI::IsMember({"fast", "toolkit"}));
}

std::vector<XMPTrack> ReadTracks(const std::string& path, ReaderChoice reader) {
    std::vector<XMPTrack> tracks;
    if (reader == ReaderChoice::kFast && StreamTracks(path, tracks)) {
        return tracks;
    }
    return ToolkitTracks(path);
}

}  // namespace keltemporalxmp::tool
