#pragma once
// The xmpMM:History array of a document: appending resource events and
// finding the events that changed a part.

#include <string>
#include <vector>

#include <xmptoolkit/TXMPMeta.hpp>

namespace xmptoolkit_detail {

struct ResourceEvent {
    std::string action;
    std::string instanceID;
    std::string when;
    std::string softwareAgent;
    std::string changed;  // part names joined by ";"; empty leaves stEvt:changed out
};

struct RecordedChange {
    std::string instanceID;
    std::vector<std::string> parts;  // empty when the event names no parts
};

void AppendHistoryEvent(TXMPMeta<std::string>& meta, const ResourceEvent& event);

// The history's events, oldest first.
std::vector<RecordedChange> ReadHistoryChanges(const TXMPMeta<std::string>& meta);

// An event that names no parts ("created", "derived", or one written by a tool
// that leaves stEvt:changed out) may have changed anything, so it counts as a
// change of every part. Otherwise a changed part touches the parts below it
// and the parts above it: "/content/audio" changed means "/content" and "/"
// changed too, and "/content" changed means "/content/audio" may have.
bool ChangedAnyPart(const RecordedChange& change, const std::vector<XMP_StringPtr>& parts);

// Part names are paths that start with "/"; anything else is a bad parameter.
void CheckPartNames(const std::vector<XMP_StringPtr>& parts, XMP_StringPtr operation);

}  // namespace xmptoolkit_detail
