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

std::optional<Rate> RateMember(const Json& object, const std::string& path, Format format) {
    const Json* rate = Member(object, "rate");
    if (rate == nullptr) {
        return std::nullopt;
    }
    const Json* numerator = Member(*rate, "numerator");
    const Json* denominator = Member(*rate, "denominator");
    if (!numerator || !denominator || !numerator->is_number_integer() || !denominator->is_number_integer()) {
        FailAt(format, path + ".rate", "{\"numerator\": integer, \"denominator\": integer}");
    }
    const Rate value{numerator->get<std::int64_t>(), denominator->get<std::int64_t>()};
    if (value == Rate{}) {
        return std::nullopt;
    }
    return value;
}

Json RateJson(Rate rate) {
    return {{"numerator", rate.numerator}, {"denominator", rate.denominator}};
}

std::vector<CuePoint> CuePointsMember(const Json& object, const char* name, const std::string& path, Format format) {
    std::vector<CuePoint> cuePoints;
    const Json* list = Member(object, name);
    if (list == nullptr) {
        return cuePoints;
    }
    if (!list->is_array()) {
        FailAt(format, path + "." + name, "an array");
    }
    for (std::size_t i = 0; i < list->size(); ++i) {
        const std::string itemPath = path + "." + name + "[" + std::to_string(i) + "]";
        if (!(*list)[i].is_object()) {
            FailAt(format, itemPath, "{\"key\": text, \"value\": text}");
        }
        cuePoints.push_back(
            {TextMember((*list)[i], "key", itemPath, format), TextMember((*list)[i], "value", itemPath, format)});
    }
    return cuePoints;
}

Json CuePointsJson(const std::vector<CuePoint>& cuePoints) {
    Json list = Json::array();
    for (const CuePoint& cuePoint : cuePoints) {
        list.push_back({{"key", cuePoint.key}, {"value", cuePoint.value}});
    }
    return list;
}

}  // namespace keltemporalxmp::exchange
