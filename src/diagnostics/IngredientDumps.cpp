// Dumps of an ingredient, with its two parts taken apart, and of a pantry entry.

#include <keltemporalxmp/docops.hpp>

#include <cstdio>
#include <limits>
#include <string>

#include "diagnostics/DumpFormat.hpp"

namespace keltemporalxmp {
namespace {

using diagnostics::DumpFrame;
using diagnostics::FieldLines;
using diagnostics::kFieldOffset;

constexpr int kIngredientColumn = 33;
constexpr int kPantryEntryColumn = 30;
constexpr int kPartFieldIndent = 36;

// "name.member:" at the parts' indentation, the value to follow.
void PrintPartName(const char* name, const char* member) {
    diagnostics::PrintIndent(kPartFieldIndent);
    std::printf("%s.%s:", name, member);
}

void PrintPartNumber(const char* name, const char* member, std::int64_t value) {
    PrintPartName(name, member);
    std::printf("'%lld'\n", static_cast<long long>(value));
}

void PrintPartTime(const char* name, const char* member, std::int64_t ticks) {
    PrintPartName(name, member);
    diagnostics::PrintTimeValue(ticks);
    std::printf("\n");
}

// The part string taken apart: rates default to 1/1, a missing duration is unspecified.
void PrintParsedPart(const char* name, const std::string& part) {
    std::int64_t start = 0;
    std::int64_t startNumerator = 1;
    std::int64_t startDenominator = 1;
    std::int64_t duration = 0;
    std::int64_t durationNumerator = 1;
    std::int64_t durationDenominator = 1;
    std::string path;
    XMPDocOpsTemporal::ParsePart(part.c_str(), &start, &startNumerator, &startDenominator, &duration,
                                 &durationNumerator, &durationDenominator, std::numeric_limits<std::int64_t>::max(),
                                 &path);
    PrintPartName(name, "path");
    std::printf("'%s'\n", path.c_str());
    PrintPartTime(name, "startTime", start);
    PrintPartNumber(name, "startTimeNumerator", startNumerator);
    PrintPartNumber(name, "startTimeDenominator", startDenominator);
    PrintPartTime(name, "duration", duration);
    PrintPartNumber(name, "durationNumerator", durationNumerator);
    PrintPartNumber(name, "durationDenominator", durationDenominator);
}

}  // namespace

void XMP_internalIngredient::debug_Dump() const {
    const DumpFrame frame(diagnostics::kRecordIndent, "XMP_internalIngredient");
    const FieldLines fields(diagnostics::kRecordIndent + kFieldOffset, kIngredientColumn);
    fields.Text("m_IngredientKey", m_IngredientKey);
    fields.Text("m_instanceID", m_instanceID);
    fields.Text("m_documentID", m_documentID);
    fields.Text("m_versionID", m_versionID);
    fields.Text("m_renditionClass", m_renditionClass);
    fields.Text("m_renditionParams", m_renditionParams);
    fields.Text("m_manager", m_manager);
    fields.Text("m_managerVariant", m_managerVariant);
    fields.Text("m_manageTo", m_manageTo);
    fields.Text("m_manageUI", m_manageUI);
    fields.Text("m_fromPart", m_fromPart);
    PrintParsedPart("m_fromPart", m_fromPart);
    fields.Text("m_toPart", m_toPart);
    PrintParsedPart("m_toPart", m_toPart);
    fields.Text("m_partMapping", m_partMapping);
    fields.Text("m_linkForm", m_linkForm);
    fields.Text("m_linkCategory", m_linkCategory);
    fields.Text("m_URI_filePath", m_URI_filePath);
    fields.Text("m_URI_alternatePaths", m_URI_alternatePaths);
    fields.Text("m_URI_lastModifyDate", m_URI_lastModifyDate);
    fields.Text("m_placedXResolution", m_placedXResolution);
    fields.Text("m_placedYResolution", m_placedYResolution);
    fields.Text("m_placedResolutionUnit", m_placedResolutionUnit);
    fields.Text("m_maskMarkers", m_maskMarkers);
}

void XMP_internalPantryEntry::debug_Dump() const {
    const DumpFrame frame(diagnostics::kRecordIndent, "XMP_internalPantryEntry");
    const FieldLines fields(diagnostics::kRecordIndent + kFieldOffset, kPantryEntryColumn);
    fields.Text("m_PantryEntryKey", m_PantryEntryKey);
    fields.Pointer("m_SourceXMPMeta", &m_SourceXMPMeta);
    fields.Int32("m_SourcePantryIndex", m_SourcePantryIndex);
}

}  // namespace keltemporalxmp
