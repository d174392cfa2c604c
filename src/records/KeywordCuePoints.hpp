#pragma once
// The cue point form of a keyword, as the track writer and the marker API
// store it: key kKeywordExtKELPrefixV1 + id, value a JSON object holding the
// name, payload, colour and index that are set.

#include <keltemporalxmp/records.hpp>

namespace keltemporalxmp {

XMPCuePointParam KeywordToCuePoint(const XMPKeywordData& keyword);

}  // namespace keltemporalxmp
