#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include <kelcore/Exceptions.hpp>
#include <kelcore/Guid.hpp>
#include <kelcore/JSON.hpp>

#include "records/KeywordCuePoints.hpp"

namespace keltemporalxmp {

const std::string kKeywordExtKELPrefixV1 = "keywordExtKELv1_";

namespace {

constexpr std::string_view kName = "name";
constexpr std::string_view kPayload = "payload";
constexpr std::string_view kColor = "color";
constexpr std::string_view kIndex = "index";

std::string NewKeywordId() {
    return kelcore::Guid::CreateUnique().AsUTF8String();
}

// Absent members keep their defaults; present ones of another type throw
// kelcore::missing_key_exception naming the member.
kelcore::JSONValuePtr PresentMember(const kelcore::JSONValue& object, std::string_view name) {
    return kelcore::ObjectHasProperty(object, name) ? kelcore::GetVariantInObject(object, name) : nullptr;
}

void ReadText(const kelcore::JSONValue& object, std::string_view name, std::string& field) {
    const kelcore::JSONValuePtr member = PresentMember(object, name);
    if (member == nullptr) {
        return;
    }
    if (!member->is_string()) {
        throw kelcore::missing_key_exception(std::string(name));
    }
    field = member->get<std::string>();
}

void ReadInteger(const kelcore::JSONValue& object, std::string_view name, std::int32_t& field) {
    const kelcore::JSONValuePtr member = PresentMember(object, name);
    if (member == nullptr) {
        return;
    }
    constexpr std::int64_t kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();
    if (member->is_number_unsigned()) {
        if (member->get<std::uint64_t>() <= static_cast<std::uint64_t>(kHighest)) {
            field = static_cast<std::int32_t>(member->get<std::uint64_t>());
            return;
        }
    } else if (member->is_number_integer()) {
        const auto value = member->get<std::int64_t>();
        if (value >= kLowest && value <= kHighest) {
            field = static_cast<std::int32_t>(value);
            return;
        }
    }
    throw kelcore::missing_key_exception(std::string(name));
}

}  // namespace

XMPKeywordData::XMPKeywordData(const std::string& name, const XMPKeywordExtension& extension)
    : XMPKeywordData(name, extension, NewKeywordId()) {}

XMPKeywordData::XMPKeywordData(const XMPKeywordData& other, bool newIdentity)
    : XMPKeywordData(other.m_Name, other.m_Extension, newIdentity ? NewKeywordId() : other.id) {}

XMPKeywordData::XMPKeywordData(std::string name, XMPKeywordExtension extension, std::string keywordId)
    : m_Name(std::move(name)), m_Extension(std::move(extension)), id(std::move(keywordId)) {}

XMPKeywordData CuePointToKeyword(const XMPCuePointParam& cuePoint) {
    const kelcore::JSONValuePtr value = kelcore::JSONParse(*cuePoint.GetValuePtr());
    if (value == nullptr) {
        throw kelcore::parse_exception("keltemporalxmp::ParseJson: No properties");
    }
    std::string name;
    XMPKeywordExtension extension;
    XMPKELTagDescription& tag = extension.m_TagDescription;
    if (value->is_object()) {
        ReadText(*value, kName, name);
        ReadText(*value, kPayload, tag.m_Payload);
        ReadInteger(*value, kColor, tag.m_ARGBColor);
        ReadInteger(*value, kIndex, tag.m_Index);
    }
    // Which cue points are keywords is the caller's choice; the prefix is not checked here.
    return XMPKeywordData(std::move(name), std::move(extension),
                          cuePoint.GetKeyPtr()->substr(kKeywordExtKELPrefixV1.size()));
}

XMPCuePointParam KeywordToCuePoint(const XMPKeywordData& keyword) {
    const XMPKELTagDescription& tag = keyword.m_Extension.m_TagDescription;
    kelcore::JSONValue object = kelcore::JSONValue::object();
    // Empty texts and zero numbers are left out; reading gives them back as defaults.
    if (!keyword.m_Name.empty()) {
        kelcore::AddToObject(object, kName, kelcore::JSONValue(keyword.m_Name), false);
    }
    if (!tag.m_Payload.empty()) {
        kelcore::AddToObject(object, kPayload, kelcore::JSONValue(tag.m_Payload), false);
    }
    if (tag.m_ARGBColor != 0) {
        kelcore::AddToObject(object, kColor, kelcore::JSONValue(tag.m_ARGBColor), false);
    }
    if (tag.m_Index != 0) {
        kelcore::AddToObject(object, kIndex, kelcore::JSONValue(tag.m_Index), false);
    }
    const std::string key = kKeywordExtKELPrefixV1 + keyword.id;
    return XMPCuePointParam(key.c_str(), kelcore::GetJSONUTF8String(object).c_str());
}

}  // namespace keltemporalxmp
