// A keyword cue point's JSON value read into a keyword, with the exceptions
// the conversion documents for bad JSON and wrong member types.

#include <keltemporalxmp/records.hpp>

#include <kelcore/Exceptions.hpp>

#include "FuzzInput.hpp"

using namespace keltemporalxmp;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string value(reinterpret_cast<const char*>(data), size);
    try {
        const XMPKeywordData keyword =
            CuePointToKeyword(XMPCuePointParam((kKeywordExtKELPrefixV1 + "id").c_str(), value.c_str()));
        XMPKeywordData copy(keyword, true);
    } catch (const kelcore::parse_exception&) {
    } catch (const kelcore::missing_key_exception&) {
    }
    return 0;
}
