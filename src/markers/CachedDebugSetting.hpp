#pragma once
// A boolean debug setting read through a process-wide cache: the database is
// read again only when its change count has moved since the last read.

#include <atomic>
#include <cstdint>
#include <string>

namespace keltemporalxmp {
namespace markers {

class CachedDebugSetting {
public:
    CachedDebugSetting(std::string key, bool defaultValue);

    // True exactly when the entry is "true". Once read, an entry that has gone
    // keeps the last value seen. Threads racing here may both read the entry;
    // the last one to store wins, which is harmless for a debug switch.
    bool Get();

private:
    static constexpr std::int64_t kNeverRead = -1;

    const std::string m_key;
    const bool m_defaultValue;
    std::atomic<bool> m_value;
    std::atomic<bool> m_mustRead{true};
    std::atomic<std::int64_t> m_changeCount{kNeverRead};
};

// "BE.Marker.EnableRemoveRedundantTags": markers that differ only in cue point
// data count as equal while it is on.
bool IsRemoveRedundantTagsEnabled();

}  // namespace markers
}  // namespace keltemporalxmp
