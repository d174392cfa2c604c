#include <kelcore/DebugDatabase.hpp>

#include <cstdlib>

namespace kelcore {
namespace {

std::string_view TrimBlanks(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

DebugDatabase& DebugDatabase::Instance() {
    static DebugDatabase instance([] {
        const char* settings = std::getenv(kEnvironmentVariable);
        return std::string_view(settings == nullptr ? "" : settings);
    }());
    return instance;
}

DebugDatabase::DebugDatabase(std::string_view settings) {
    while (!settings.empty()) {
        const std::size_t end = settings.find(';');
        const std::string_view piece = settings.substr(0, end);
        settings = end == std::string_view::npos ? std::string_view() : settings.substr(end + 1);

        const std::size_t equals = piece.find('=');
        if (equals == std::string_view::npos) continue;
        const std::string_view key = TrimBlanks(piece.substr(0, equals));
        if (key.empty()) continue;
        m_entries.insert_or_assign(std::string(key), std::string(TrimBlanks(piece.substr(equals + 1))));
    }
}

std::string DebugDatabase::GetEntry(const std::string& key, const std::string& defaultValue) const {
    std::lock_guard lock(m_mutex);
    auto entry = m_entries.find(key);
    return entry == m_entries.end() ? defaultValue : entry->second;
}

bool DebugDatabase::HasEntry(const std::string& key) const {
    std::lock_guard lock(m_mutex);
    return m_entries.contains(key);
}

void DebugDatabase::SetEntry(const std::string& key, const std::string& value) {
    std::lock_guard lock(m_mutex);
    m_entries.insert_or_assign(key, value);
    ++m_changeCount;
}

void DebugDatabase::RemoveEntry(const std::string& key) {
    std::lock_guard lock(m_mutex);
    m_entries.erase(key);
    ++m_changeCount;
}

std::uint64_t DebugDatabase::GetChangeCount() const noexcept {
    return m_changeCount.load();
}

}  // namespace kelcore
