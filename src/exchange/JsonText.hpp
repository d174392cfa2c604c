#pragma once
// JSON text for the formats built on it: parsing that says where the text
// is malformed, writing that never fails on bad UTF-8, and member access
// that names the member a value is wrong in.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include <keltemporalxmp/exchange.hpp>

namespace keltemporalxmp::exchange {

using Json = nlohmann::ordered_json;

// ImportError with the line and column of the first malformed byte.
Json ParseJsonText(std::string_view text, Format format);
// Two-space indentation; invalid UTF-8 becomes U+FFFD.
std::string JsonText(const Json& value);

// ImportError naming the member: "expected WHAT at PATH".
[[noreturn]] void FailAt(Format format, const std::string& path, const std::string& expected);

// The member, or null when it is missing.
const Json* Member(const Json& object, const char* name);
// The text member; "" when missing; ImportError when not text.
std::string TextMember(const Json& object, const char* name, const std::string& path, Format format);

// The rate member {"numerator", "denominator"}; nothing when it is missing or
// 0/0, which is how a marker says it has none (an export leaves it out).
std::optional<Rate> RateMember(const Json& object, const std::string& path, Format format);
Json RateJson(Rate rate);
// The cue point list member [{"key", "value"}]; empty when it is missing.
std::vector<CuePoint> CuePointsMember(const Json& object, const char* name, const std::string& path, Format format);
Json CuePointsJson(const std::vector<CuePoint>& cuePoints);

}  // namespace keltemporalxmp::exchange
