#include <kelcore/Hash.hpp>

#include <algorithm>
#include <iterator>
#include <new>

#include <xxhash.h>

namespace kelcore {

struct HashValueMixerState::Digest {
    Digest() : state(XXH3_createState()) {
        if (state == nullptr) throw std::bad_alloc();
        XXH3_128bits_reset(state);
    }
    ~Digest() { XXH3_freeState(state); }
    Digest(const Digest&) = delete;
    Digest& operator=(const Digest&) = delete;

    XXH3_state_t* state;
};

HashValueMixerState::HashValueMixerState() : m_digest(std::make_unique<Digest>()) {}

HashValueMixerState::~HashValueMixerState() = default;

void UpdateHashState(HashValueMixerState& state, const void* data, std::size_t size) {
    if (size == 0) return;  // data may be null for an empty piece
    XXH3_128bits_update(state.m_digest->state, data, size);
}

void GetHashResult(HashValueMixerState& state, Guid& result) {
    // The canonical (big-endian) form keeps the bytes independent of the host.
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, XXH3_128bits_digest(state.m_digest->state));
    Guid::Bytes bytes{};
    std::copy(std::begin(canonical.digest), std::end(canonical.digest), bytes.begin());
    result = Guid(bytes);
}

}  // namespace kelcore
