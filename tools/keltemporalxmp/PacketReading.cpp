#include "PacketReading.hpp"

#include <sys/stat.h>

#include <cstdio>
#include <iterator>
#include <memory>
#include <utility>

#include <keltemporalxmp/streamread.hpp>

#include "Documents.hpp"
#include "FileReport.hpp"

namespace keltemporalxmp::tool {
namespace {

constexpr std::size_t kReadBytes = std::size_t{1} << 20;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// A sidecar's packet fed to a streaming reader as it is read. False when the
// toolkit must read the file: not a regular file (a FIFO would be read
// twice), unreadable (the toolkit's message is the one to give), or beyond
// the streaming reader; then finish is not called.
template <typename Reader, typename Finish>
bool StreamSidecar(const std::string& path, Reader& reader, const Finish& finish) {
    struct stat status {};
    if (!IsSidecar(path) || ::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) {
        return false;
    }
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
    return std::ferror(file.get()) == 0 && finish();
}

bool StreamTracks(const std::string& path, std::vector<XMPTrack>& tracks) {
    PacketTrackReader reader;
    return StreamSidecar(path, reader, [&] { return reader.Finish(tracks); });
}

std::vector<XMPTrack> TracksOf(SXMPMeta& meta) {
    const std::unique_ptr<XMPDocOpsTemporal> document = OpenTemporalDocument(meta);
    return {std::make_move_iterator(document->TrackListIteratorBegin()),
            std::make_move_iterator(document->TrackListIteratorEnd())};
}

std::vector<XMPTrack> ToolkitTracks(const std::string& path) {
    SXMPMeta meta = ReadDocument(path);
    return TracksOf(meta);
}

std::string MediaManagementProperty(const SXMPMeta& meta, const char* name) {
    std::string value;
    meta.GetProperty(kXMP_NS_XMP_MM, name, &value, nullptr);
    return value;
}

std::vector<PantryItemDocument> ToolkitPantry(const std::string& path) {
    const SXMPMeta meta = ReadDocument(path);
    std::vector<PantryItemDocument> items;
    const int count = meta.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Pantry");
    for (int item = 1; item <= count; ++item) {
        SXMPMeta source;
        XMPDocOpsTemporal::ExtractXMPMetaFromPantry(&source, meta,
                                                    ("xmpMM:Pantry[" + std::to_string(item) + "]").c_str());
        std::vector<XMPTrack> tracks = TracksOf(source);
        items.push_back({item, MediaManagementProperty(source, "xmpMM:InstanceID"),
                         MediaManagementProperty(source, "xmpMM:DocumentID"), std::move(tracks),
                         source.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Ingredients")});
    }
    return items;
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

std::optional<XMPTemporalMetadataCollector::Collection> StreamCollection(const std::string& path,
                                                                         const CollectRange& range) {
    PacketDocumentReader reader;
    if (!StreamSidecar(path, reader, [&] { return reader.Finish(); })) {
        return std::nullopt;
    }
    XMPTemporalMetadataCollector::Collection collection;
    reader.Collect(range.mask, range.start, range.duration, range.maxRecords, collection);
    return collection;
}

XMPTemporalMetadataCollector::Collection ReadCollection(const std::string& path, const CollectRange& range,
                                                        ReaderChoice reader) {
    if (reader == ReaderChoice::kFast) {
        if (std::optional<XMPTemporalMetadataCollector::Collection> collection = StreamCollection(path, range)) {
            return std::move(*collection);
        }
    }
    const SXMPMeta meta = ReadDocument(path);
    XMPTemporalMetadataCollector collector(range.mask, meta, range.start, range.duration, range.maxRecords);
    return std::move(collector.GetXMPTemporalMetadataInfoCollection());
}

XMPDocOpsTemporal::IngredientList ReadIngredients(const std::string& path, ReaderChoice reader) {
    XMPDocOpsTemporal::IngredientList ingredients;
    if (reader == ReaderChoice::kFast) {
        PacketDocumentReader stream;
        if (StreamSidecar(path, stream, [&] { return stream.Finish(); })) {
            stream.Ingredients(ingredients);
            return ingredients;
        }
    }
    SXMPMeta meta = ReadDocument(path);
    const std::unique_ptr<XMPDocOpsTemporal> document = OpenTemporalDocument(meta);
    ingredients.insert(document->IngredientListIteratorBegin(), document->IngredientListIteratorEnd());
    return ingredients;
}

std::vector<PantryItemDocument> ReadPantry(const std::string& path, ReaderChoice reader) {
    if (reader == ReaderChoice::kFast) {
        PacketPantryReader stream;
        std::vector<PantryItemDocument> items;
        if (StreamSidecar(path, stream, [&] { return stream.Finish(items); })) {
            return items;
        }
    }
    return ToolkitPantry(path);
}

}  // namespace keltemporalxmp::tool
