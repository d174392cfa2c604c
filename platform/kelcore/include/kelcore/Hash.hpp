#pragma once
// A streaming 128-bit hash (XXH3-128) of byte sequences into a Guid. The
// result is the same on every platform for the same bytes.

#include <cstddef>
#include <memory>

#include <kelcore/Guid.hpp>
#include <keltemporalxmp/export.hpp>

namespace kelcore {

class KELTXMP_API HashValueMixerState {
public:
    HashValueMixerState();
    ~HashValueMixerState();
    HashValueMixerState(const HashValueMixerState&) = delete;
    HashValueMixerState& operator=(const HashValueMixerState&) = delete;

private:
    struct Digest;
    friend void UpdateHashState(HashValueMixerState& state, const void* data, std::size_t size);
    friend void GetHashResult(HashValueMixerState& state, Guid& result);

    std::unique_ptr<Digest> m_digest;
};

// Feeds bytes into the hash; feeding in pieces gives the same result as at once.
KELTXMP_API void UpdateHashState(HashValueMixerState& state, const void* data, std::size_t size);

// Writes the hash of every byte fed so far; the state may be fed further.
KELTXMP_API void GetHashResult(HashValueMixerState& state, Guid& result);

}  // namespace kelcore
