#pragma once
// Process-wide text settings that a host or a user can switch without code.
// The shared instance starts from the environment variable
// KELTEMPORALXMP_DEBUG, "key=value;key=value", read once at the first
// Instance(). Every operation is safe to call from several threads.

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include <keltemporalxmp/export.hpp>

namespace kelcore {

class KELTXMP_API DebugDatabase {
public:
    static constexpr const char* kEnvironmentVariable = "KELTEMPORALXMP_DEBUG";

    static DebugDatabase& Instance();

    // Entries from "key=value;key=value": blanks around keys and values are
    // dropped, pieces without '=' or with an empty key are ignored, and a
    // later value for the same key wins.
    explicit DebugDatabase(std::string_view settings = {});
    DebugDatabase(const DebugDatabase&) = delete;
    DebugDatabase& operator=(const DebugDatabase&) = delete;

    std::string GetEntry(const std::string& key, const std::string& defaultValue) const;
    bool HasEntry(const std::string& key) const;
    void SetEntry(const std::string& key, const std::string& value);
    void RemoveEntry(const std::string& key);

    // Moves on every SetEntry and RemoveEntry, so readers can cache entries.
    std::uint64_t GetChangeCount() const noexcept;

private:
    mutable std::mutex m_mutex;
    std::map<std::string, std::string, std::less<>> m_entries;
    std::atomic<std::uint64_t> m_changeCount{0};
};

}  // namespace kelcore
