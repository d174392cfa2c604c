#include <keltemporalxmp/markers.hpp>

#include <kelcore/UTF.hpp>

namespace keltemporalxmp {

void MarkerTypeFilter::AddMarkerType(const UTF16String& type) {
    std::lock_guard lock(m_mutex);
    m_filterList.insert(type);
}

void MarkerTypeFilter::AddMarkerType(const kelcore::UTF8String& type) {
    std::lock_guard lock(m_mutex);
    m_filterList.insert(kelcore::UTF8to16(type));
}

void MarkerTypeFilter::AddMarkerTypes(const MarkerTypeSet& types) {
    std::lock_guard lock(m_mutex);
    m_filterList.insert(types.begin(), types.end());
}

void MarkerTypeFilter::RemoveMarkerType(const UTF16String& type) {
    std::lock_guard lock(m_mutex);
    m_filterList.erase(type);
}

void MarkerTypeFilter::RemoveMarkerTypes(const MarkerTypeSet& types) {
    std::lock_guard lock(m_mutex);
    for (const UTF16String& type : types) m_filterList.erase(type);
}

void MarkerTypeFilter::RemoveAllMarkerTypes() {
    std::lock_guard lock(m_mutex);
    m_filterList.clear();
}

MarkerTypeSet MarkerTypeFilter::GetFilterList() const {
    std::lock_guard lock(m_mutex);
    return m_filterList;
}

bool MarkerTypeFilter::GetExclusiveMode() const {
    std::lock_guard lock(m_mutex);
    return m_exclusiveMode;
}

void MarkerTypeFilter::SetExclusiveMode(bool exclusiveMode) {
    std::lock_guard lock(m_mutex);
    m_exclusiveMode = exclusiveMode;
}

bool MarkerTypeFilter::Validate(const UTF16String& type) const {
    std::lock_guard lock(m_mutex);
    return m_filterList.contains(type) != m_exclusiveMode;
}

}  // namespace keltemporalxmp
