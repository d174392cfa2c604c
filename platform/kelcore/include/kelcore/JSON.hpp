#pragma once
// A small JSON value API. Objects keep their members in the order they were
// added, so written text follows the order of the writer's calls.

#include <memory>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include <keltemporalxmp/export.hpp>

namespace kelcore {

using JSONValue = nlohmann::ordered_json;
using JSONValuePtr = std::shared_ptr<JSONValue>;

// The value the whole text holds, or null when the text is empty or not
// well-formed JSON; never throws for bad text, so callers choose their error.
KELTXMP_API JSONValuePtr JSONParse(std::string_view text);

// False for a value that is not an object.
KELTXMP_API bool ObjectHasProperty(const JSONValue& object, std::string_view name);

// A copy of the member; missing_key_exception (with the name as message)
// when the value is not an object or has no such member.
KELTXMP_API JSONValuePtr GetVariantInObject(const JSONValue& object, std::string_view name);

// Sets the member, keeping its place when it already exists; with
// keepExisting an existing member is left as it is. A null value becomes an
// empty object first; any other non-object throws std::invalid_argument.
KELTXMP_API void AddToObject(JSONValue& object, std::string_view name, const JSONValue& value, bool keepExisting);

// Compact text (no spaces, members in order); invalid UTF-8 inside strings
// is written as U+FFFD.
KELTXMP_API std::string GetJSONUTF8String(const JSONValue& value);

}  // namespace kelcore
