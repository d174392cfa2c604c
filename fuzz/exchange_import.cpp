// The marker importers of every exchange format, and an export of whatever
// they read. The first byte chooses the format, the second the frame rate.

#include <keltemporalxmp/exchange.hpp>

#include "FuzzInput.hpp"

using namespace keltemporalxmp::exchange;

namespace {

const Format kFormats[] = {Format::kYouTube, Format::kFFMetadata, Format::kWebVTT, Format::kSRT,
                           Format::kEDL,     Format::kCSV,        Format::kTSV,    Format::kAudacity,
                           Format::kOTIO,    Format::kJSON};
const Rate kRates[] = {{}, {25, 1}, {30000, 1001}, {60000, 1001}, {1, 1000000}};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const Format format = kFormats[data[0] % std::size(kFormats)];
    ImportOptions options;
    options.rate = kRates[data[1] % std::size(kRates)];
    const std::string_view text(reinterpret_cast<const char*>(data + 2), size - 2);
    try {
        const std::vector<ExchangeMarker> markers = ImportMarkers(text, format, options);
        ExportOptions exportOptions;
        exportOptions.force = true;
        const std::string exported = ExportMarkers(markers, format, exportOptions);
        // The tool's own JSON carries every field exactly.
        if (format == Format::kJSON && ImportMarkers(exported, format, options) != markers) {
            __builtin_trap();
        }
    } catch (const XMP_Error& error) {
        keltemporalxmp::fuzz::CheckError(error);
    }
    return 0;
}
