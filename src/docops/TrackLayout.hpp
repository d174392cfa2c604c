#pragma once
// How the track list sits in XMP: `xmpDM:Tracks`, an unordered array of track
// structs; each track's `markers`, an ordered array of marker structs; each
// marker's `cuePointParams`, an ordered array of key/value structs. All fields
// are in the Dynamic Media schema.

#include <cstdint>
#include <string>
#include <string_view>

#include <kelmediatypes/TickTime.hpp>
#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp {
namespace docops {

inline constexpr const char* kTracksPath = "xmpDM:Tracks";
inline constexpr XMP_OptionBits kTracksForm = kXMP_PropValueIsArray;
inline constexpr XMP_OptionBits kMarkersForm = kXMP_PropArrayIsOrdered;
inline constexpr XMP_OptionBits kCuePointParamsForm = kXMP_PropArrayIsOrdered;

inline constexpr std::int64_t kTicksPerSecond = kelmediatypes::TickTime::kTicksPerSecond;

// Field names as they appear in paths.
namespace field {
inline constexpr std::string_view kTrackName = "xmpDM:trackName";
inline constexpr std::string_view kTrackType = "xmpDM:trackType";
inline constexpr std::string_view kFrameRate = "xmpDM:frameRate";
inline constexpr std::string_view kMarkers = "xmpDM:markers";

inline constexpr std::string_view kStartTime = "xmpDM:startTime";
inline constexpr std::string_view kDuration = "xmpDM:duration";
inline constexpr std::string_view kComment = "xmpDM:comment";
inline constexpr std::string_view kName = "xmpDM:name";
inline constexpr std::string_view kLocation = "xmpDM:location";
inline constexpr std::string_view kTarget = "xmpDM:target";
inline constexpr std::string_view kType = "xmpDM:type";
inline constexpr std::string_view kCuePointType = "xmpDM:cuePointType";
inline constexpr std::string_view kSpeaker = "xmpDM:speaker";
inline constexpr std::string_view kProbability = "xmpDM:probability";
inline constexpr std::string_view kCuePointParams = "xmpDM:cuePointParams";

inline constexpr std::string_view kKey = "xmpDM:key";
inline constexpr std::string_view kValue = "xmpDM:value";
}  // namespace field

// The marker ID travels as the last cue point parameter, under this key.
inline constexpr std::string_view kMarkerIdKey = "marker_guid";

// "[index]" appended to a path.
void AppendItemIndex(std::string& path, std::size_t index);

// Raises the error again with the operation and the property it was for.
[[noreturn]] void RethrowAt(const XMP_Error& error, std::string_view operation, std::string_view path);

}  // namespace docops
}  // namespace keltemporalxmp
