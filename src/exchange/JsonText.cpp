#include "JsonText.hpp"

#include <algorithm>

namespace keltemporalxmp::exchange {

Json ParseJsonText(std::string_view text, Format format) {
    try {
        return Json::parse(text.begin(), text.end());
    } catch (const Json::parse_error& error) {
        // The error's byte count is one past the byte it stopped at.
        const std::size_t offset = std::min(error.byte > 0 ? error.byte - 1 : 0, text.size());
        const std::string_view before = text.substr(0, offset);
        const std::size_t line = 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
        const std::size_t lineStart = before.rfind('\n');
        const std::size_t column = offset - (lineStart == std::string_view::npos ? 0 : lineStart + 1) + 1;
        throw ImportError(format, line, column, "well-formed JSON");
    } catch (const Json::out_of_range&) {
        // Says which number, not where.
        throw ImportError(format, 0, 0, "every number within the range of a double");
    }
}

std::string JsonText(const Json& value) {
    return value.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

void FailAt(Format format, const std::string& path, const std::string& expected) {
    throw ImportError(format, 0, 0, expected + " at " + path);
}

const Json* Member(const Json& object, const char* name) {
    if (!object.is_object()) {
        return nullptr;
    }
    const auto found = object.find(name);
    return found == object.end() ? nullptr : &*found;
}

std::string TextMember(const Json& object, const char* name, const std::string& path, Format format) {
    const Json* member = Member(object, name);
    if (member == nullptr || member->is_null()) {
        return "";
    }
    if (!member->is_string()) {
        FailAt(format, path + "." + name, "text");
    }
    return member->get<std::string>();
}

}  // namespace keltemporalxmp::exchange
