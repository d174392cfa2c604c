#include "CollectRange.hpp"

#include <charconv>
#include <limits>

#include "Errors.hpp"
#include "TimeInput.hpp"

namespace keltemporalxmp::tool {
namespace {

// Lower than the library's: the tool holds every record three times (the
// record, its table row and its JSON), and the whole report stays under
// about 1 GB at this bound.
constexpr std::size_t kDefaultMaxRecords = 250000;

unsigned char ParseMask(std::string text) {
    if (text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0) {
        text.erase(0, 2);
    }
    unsigned int mask = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), mask, 16);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || mask > 0xFF) {
        throw UsageError("--mask: not a hexadecimal byte (00 to FF): " + text);
    }
    return static_cast<unsigned char>(mask);
}

std::size_t ParseMaxRecords(const std::string& text) {
    std::size_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || count == 0) {
        throw UsageError("--max-records: not a whole number from 1 to " +
                         std::to_string(std::numeric_limits<std::size_t>::max()) + ": " + text);
    }
    return count;
}

std::int64_t ParseRangeTime(const std::string& option, const std::string& text) {
    try {
        return ParseUserTime(text, std::nullopt).ticks;
    } catch (const InputError& error) {
        throw UsageError(option + ": " + error.what());
    }
}

}  // namespace

void AddCollectRangeOptions(CLI::App& command, CollectRangeOptions& options) {
    command.add_option("--start", options.start, "Start of the range (a time as `time` reads it; default 0)");
    command.add_option("--duration", options.duration, "Length of the range (default: to the end)");
    command.add_option("--mask", options.mask,
                       "What to collect, hexadecimal: 01 base document, 02 ingredients, 04 own markers, "
                       "08 ingredients' markers, 10 ignore masking, 20 reversed from end, 40 no repeats "
                       "(default 0F)");
    options.maxRecords = std::to_string(kDefaultMaxRecords);
    command.add_option("--max-records", options.maxRecords,
                       "Fail a document that would collect more records than this (default " +
                           std::to_string(kDefaultMaxRecords) + ")");
}

CollectRange ParseCollectRange(const CollectRangeOptions& options) {
    return {ParseRangeTime("--start", options.start),
            options.duration ? ParseRangeTime("--duration", *options.duration) : kTimeUnspecified,
            ParseMask(options.mask), ParseMaxRecords(options.maxRecords)};
}

std::string CollectedMarkerType(const XMPTemporalMetadataInfo& info) {
    std::string type;
    info.GetMarkerField(&type, XMPTemporalMetadataInfo::kInfoField_MarkerType);
    if (type.empty()) {
        info.GetMarkerField(&type, XMPTemporalMetadataInfo::kInfoField_ReportedTrackType);
    }
    return type;
}

}  // namespace keltemporalxmp::tool
