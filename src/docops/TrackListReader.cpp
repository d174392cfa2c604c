#include "docops/TrackListReader.hpp"

#include <string>
#include <string_view>

#include "docops/TrackListAssembly.hpp"

namespace keltemporalxmp::docops {
namespace {

// The depth of the path's last step below the array, and its name.
TrackNode LastStep(std::string_view relativePath, XMP_OptionBits options) {
    TrackNode node;
    node.options = options;
    std::size_t nameStart = std::string_view::npos;
    for (std::size_t i = 0; i < relativePath.size(); ++i) {
        if (relativePath[i] == '/') {
            ++node.depth;
            nameStart = i + 1;
        } else if (relativePath[i] == '[') {
            ++node.depth;
            nameStart = std::string_view::npos;
        }
    }
    if (nameStart != std::string_view::npos) {
        node.name = relativePath.substr(nameStart);
    }
    return node;
}

}  // namespace

void ReadTrackList(const SXMPMeta& meta, const char* schemaNS, const char* tracksPath, std::vector<XMPTrack>& tracks,
                   KeywordCuePoints keywords) {
    SXMPIterator walk(meta, schemaNS, tracksPath, kXMP_IterOmitQualifiers);
    std::string path;
    std::string value;
    XMP_OptionBits options = 0;
    if (!walk.Next(nullptr, &path, &value, &options) || !TrackListAssembler::IsTrackArray(options)) {
        return;
    }
    const std::string_view prefix(tracksPath);
    TrackListAssembler assembler(tracksPath, tracks, keywords);
    while (walk.Next(nullptr, &path, &value, &options)) {
        const std::string_view pathView(path);
        if (!pathView.starts_with(prefix)) {
            walk.Skip(kXMP_IterSkipSubtree);
            continue;
        }
        // Skipping is a toolkit call of its own: only worth it below a composite.
        const bool isSimple = (options & kXMP_PropCompositeMask) == 0;
        if (!assembler.Take(LastStep(pathView.substr(prefix.size()), options), value) && !isSimple) {
            walk.Skip(kXMP_IterSkipSubtree);
        }
    }
    assembler.Finish();
}

}  // namespace keltemporalxmp::docops
