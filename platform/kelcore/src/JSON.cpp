#include <kelcore/JSON.hpp>

#include <stdexcept>

#include <kelcore/Exceptions.hpp>

namespace kelcore {
namespace {

// The member, or null when there is none.
const JSONValue* FindMember(const JSONValue& object, std::string_view name) {
    if (!object.is_object()) return nullptr;
    auto member = object.find(std::string(name));
    return member == object.end() ? nullptr : &*member;
}

const JSONValue& RequireMember(const JSONValue& object, std::string_view name) {
    const JSONValue* member = FindMember(object, name);
    if (member == nullptr) throw missing_key_exception(std::string(name));
    return *member;
}

}  // namespace

JSONValuePtr JSONParse(std::string_view text) {
    JSONValue value = JSONValue::parse(text, nullptr, /*allow_exceptions=*/false);
    if (value.is_discarded()) return nullptr;
    return std::make_shared<JSONValue>(std::move(value));
}

bool ObjectHasProperty(const JSONValue& object, std::string_view name) {
    return FindMember(object, name) != nullptr;
}

JSONValuePtr GetVariantInObject(const JSONValue& object, std::string_view name) {
    return std::make_shared<JSONValue>(RequireMember(object, name));
}

void AddToObject(JSONValue& object, std::string_view name, const JSONValue& value, bool keepExisting) {
    if (object.is_null()) object = JSONValue::object();
    if (!object.is_object()) {
        throw std::invalid_argument("AddToObject: cannot add member '" + std::string(name) + "' to a " +
                                    object.type_name());
    }
    std::string key(name);
    if (keepExisting && object.contains(key)) return;
    object[key] = value;
}

std::string GetJSONUTF8String(const JSONValue& value) {
    return value.dump(-1, ' ', false, JSONValue::error_handler_t::replace);
}

}  // namespace kelcore
