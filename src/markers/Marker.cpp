#include <keltemporalxmp/markers.hpp>

#include <kelcore/Hash.hpp>

namespace keltemporalxmp {
namespace {

// A GUID text is taken as it is; any other text always hashes to the same GUID.
kelcore::Guid GuidFromIdentifier(const std::string& id) {
    if (kelcore::Guid::IsParsableGuidString(id)) return kelcore::Guid(id);
    kelcore::HashValueMixerState state;
    kelcore::UpdateHashState(state, id.data(), id.size());
    kelcore::Guid guid;
    kelcore::GetHashResult(state, guid);
    return guid;
}

}  // namespace

Marker::Marker() {
    TakeFreshIdentity();
}

Marker::Marker(const std::string& id) {
    if (!id.empty()) {
        m_markerID = id;
        m_guid = GuidFromIdentifier(id);
    }
    if (m_guid.IsNil()) TakeFreshIdentity();
}

Marker::Marker(const Marker& other, bool newIdentity) : Marker(other) {
    m_extension.reset();
    if (newIdentity) TakeFreshIdentity();
}

void Marker::SetGuid(const kelcore::Guid& guid) {
    m_guid = guid;
    m_markerID = guid.AsUTF8String();
}

void Marker::TakeFreshIdentity() {
    SetGuid(kelcore::Guid::CreateUnique());
}

}  // namespace keltemporalxmp
