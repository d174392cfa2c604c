#include "DocHistory.hpp"

#include <algorithm>
#include <sstream>
#include <string_view>

#include <xmptoolkit/TXMPUtils.hpp>

#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {
namespace {

using Meta = TXMPMeta<std::string>;
constexpr XMP_StringPtr kHistory = "History";

std::string EventItemPath(XMP_Index index) {
    std::string path;
    TXMPUtils<std::string>::ComposeArrayItemPath(kXMP_NS_XMP_MM, kHistory, index, &path);
    return path;
}

void SetEventField(Meta& meta, const std::string& item, XMP_StringPtr field, const std::string& value) {
    if (!value.empty())
        meta.SetStructField(kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_ResourceEvent, field, value.c_str());
}

std::string GetEventField(const Meta& meta, const std::string& item, XMP_StringPtr field) {
    std::string value;
    meta.GetStructField(kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_ResourceEvent, field, &value, nullptr);
    return value;
}

std::vector<std::string> SplitParts(const std::string& text) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, ';');) {
        part.erase(0, part.find_first_not_of(' '));
        part.erase(part.find_last_not_of(' ') + 1);
        if (!part.empty()) parts.push_back(part);
    }
    return parts;
}

bool IsSameOrBelow(std::string_view part, std::string_view ancestor) {
    if (ancestor == "/") return true;
    return part.starts_with(ancestor) && (part.size() == ancestor.size() || part[ancestor.size()] == '/');
}

}  // namespace

void AppendHistoryEvent(Meta& meta, const ResourceEvent& event) {
    meta.AppendArrayItem(kXMP_NS_XMP_MM, kHistory, kXMP_PropArrayIsOrdered, nullptr, kXMP_PropValueIsStruct);
    const std::string item = EventItemPath(meta.CountArrayItems(kXMP_NS_XMP_MM, kHistory));
    SetEventField(meta, item, "action", event.action);
    SetEventField(meta, item, "instanceID", event.instanceID);
    SetEventField(meta, item, "when", event.when);
    SetEventField(meta, item, "softwareAgent", event.softwareAgent);
    SetEventField(meta, item, "changed", event.changed);
}

std::vector<RecordedChange> ReadHistoryChanges(const Meta& meta) {
    std::vector<RecordedChange> changes;
    const XMP_Index count = meta.CountArrayItems(kXMP_NS_XMP_MM, kHistory);
    for (XMP_Index index = 1; index <= count; ++index) {
        const std::string item = EventItemPath(index);
        changes.push_back({GetEventField(meta, item, "instanceID"), SplitParts(GetEventField(meta, item, "changed"))});
    }
    return changes;
}

bool ChangedAnyPart(const RecordedChange& change, const std::vector<XMP_StringPtr>& parts) {
    if (change.parts.empty()) return !parts.empty();
    return std::any_of(parts.begin(), parts.end(), [&](XMP_StringPtr part) {
        return std::any_of(change.parts.begin(), change.parts.end(), [&](const std::string& changed) {
            return IsSameOrBelow(part, changed) || IsSameOrBelow(changed, part);
        });
    });
}

void CheckPartNames(const std::vector<XMP_StringPtr>& parts, XMP_StringPtr operation) {
    for (XMP_StringPtr part : parts) {
        if (part == nullptr || part[0] != '/')
            RaiseError(kXMPErr_BadParam, operation, part != nullptr ? part : "(null)", "part names start with \"/\"");
    }
}

}  // namespace xmptoolkit_detail
