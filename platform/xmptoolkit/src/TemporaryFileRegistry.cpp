#include "TemporaryFileRegistry.hpp"

#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstring>

#include <xmptoolkit/TemporaryFiles.hpp>

namespace xmptoolkit_detail {
namespace {

constexpr int kFree = -1;
constexpr int kFilling = -2;

// A lock-free table: a signal handler may read it at any moment, so an entry
// is only published (its folder set) once its name is complete.
struct Entry {
    std::atomic<int> directory{kFree};
    char name[NAME_MAX + 1] = {};
};

std::array<Entry, 16> g_entries;

}  // namespace

int RememberTemporaryFile(int directory, const std::string& name) {
    if (name.size() > NAME_MAX) return -1;
    for (std::size_t i = 0; i < g_entries.size(); ++i) {
        int expected = kFree;
        if (g_entries[i].directory.compare_exchange_strong(expected, kFilling)) {
            std::memcpy(g_entries[i].name, name.c_str(), name.size() + 1);
            g_entries[i].directory.store(directory, std::memory_order_release);
            return static_cast<int>(i);
        }
    }
    return -1;
}

void ForgetTemporaryFile(int entry) {
    if (entry >= 0) g_entries[static_cast<std::size_t>(entry)].directory.store(kFree, std::memory_order_release);
}

}  // namespace xmptoolkit_detail

namespace xmptoolkit {

void RemoveTemporaryFilesInProgress() noexcept {
    // Some of the toolkit's handlers rewrite a file through "<name>._00_"
    // and "<name>._01_"; those go too.
    constexpr const char* kSuffixes[] = {"", "._00_", "._01_"};
    for (auto& entry : xmptoolkit_detail::g_entries) {
        const int directory = entry.directory.load(std::memory_order_acquire);
        if (directory < 0) continue;
        for (const char* suffix : kSuffixes) {
            char name[sizeof entry.name + 8];
            const std::size_t length = std::strlen(entry.name);
            std::memcpy(name, entry.name, length);
            std::memcpy(name + length, suffix, std::strlen(suffix) + 1);
            ::unlinkat(directory, name, 0);
        }
    }
}

}  // namespace xmptoolkit
