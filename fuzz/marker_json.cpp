// The command-line tool's JSON marker input, as `write-markers --from` reads it.

#include "MarkerJson.hpp"

#include "Errors.hpp"
#include "FuzzInput.hpp"

using namespace keltemporalxmp::tool;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        ReadMarkersJson(text, std::nullopt);
        ReadMarkersJson(text, FrameRate{30000, 1001});
    } catch (const InputError&) {
    } catch (const XMP_Error& error) {
        keltemporalxmp::fuzz::CheckError(error);
    }
    return 0;
}
