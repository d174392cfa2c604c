#include "markers/CachedDebugSetting.hpp"

#include <utility>

#include <kelcore/DebugDatabase.hpp>

namespace keltemporalxmp::markers {

CachedDebugSetting::CachedDebugSetting(std::string key, bool defaultValue)
    : m_key(std::move(key)), m_defaultValue(defaultValue), m_value(defaultValue) {}

bool CachedDebugSetting::Get() {
    const kelcore::DebugDatabase& database = kelcore::DebugDatabase::Instance();
    const auto changeCount = static_cast<std::int64_t>(database.GetChangeCount());
    if (changeCount == m_changeCount.load(std::memory_order_acquire)) return m_value.load(std::memory_order_relaxed);

    if (m_mustRead.load(std::memory_order_relaxed) || database.HasEntry(m_key)) {
        m_value.store(database.GetEntry(m_key, m_defaultValue ? "true" : "false") == "true", std::memory_order_relaxed);
        m_mustRead.store(false, std::memory_order_relaxed);
    }
    m_changeCount.store(changeCount, std::memory_order_release);
    return m_value.load(std::memory_order_relaxed);
}

bool IsRemoveRedundantTagsEnabled() {
    static CachedDebugSetting setting("BE.Marker.EnableRemoveRedundantTags", false);
    return setting.Get();
}

}  // namespace keltemporalxmp::markers
