#include <map>

#include <keltemporalxmp/markers.hpp>

#include "markers/CachedDebugSetting.hpp"

namespace keltemporalxmp {
namespace {

using FirstEntryByKey = std::map<UTF16String, const UTF16String*>;

// Maps each key to the value of its first entry; later repeats are dropped.
FirstEntryByKey IndexByKey(const CustomMarkerParamList& list) {
    FirstEntryByKey index;
    for (const CustomMarkerParam& entry : list) index.try_emplace(entry.key, &entry.value);
    return index;
}

// Order does not matter; a repeated key counts by its first entry only.
bool SameCuePoints(const CustomMarkerParamList& a, const CustomMarkerParamList& b) {
    if (a.size() != b.size()) return false;
    const FirstEntryByKey indexA = IndexByKey(a);
    const FirstEntryByKey indexB = IndexByKey(b);
    if (indexA.size() != indexB.size()) return false;
    for (auto entryA = indexA.begin(), entryB = indexB.begin(); entryA != indexA.end(); ++entryA, ++entryB) {
        if (entryA->first != entryB->first || *entryA->second != *entryB->second) return false;
    }
    return true;
}

}  // namespace

bool Marker::operator==(const Marker& other) const {
    if (m_guid != other.m_guid || m_markerID != other.m_markerID) return false;
    if (m_startTime != other.m_startTime || m_duration != other.m_duration) return false;
    if (m_type != other.m_type || m_name != other.m_name || m_comment != other.m_comment ||
        m_location != other.m_location || m_target != other.m_target) {
        return false;
    }
    if (!markers::IsRemoveRedundantTagsEnabled() &&
        (m_cuePointType != other.m_cuePointType || !SameCuePoints(m_cuePointList, other.m_cuePointList))) {
        return false;
    }
    return m_speaker == other.m_speaker && m_probability == other.m_probability;
}

}  // namespace keltemporalxmp
