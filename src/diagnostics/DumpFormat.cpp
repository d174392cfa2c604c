#include "diagnostics/DumpFormat.hpp"

#include <cstdio>
#include <limits>

#include <keltemporalxmp/docops.hpp>

namespace keltemporalxmp::diagnostics {
namespace {

constexpr std::int64_t kTimeUnspecified = std::numeric_limits<std::int64_t>::max();

int Width(std::string_view text) {
    return static_cast<int>(text.size());
}

}  // namespace

DumpFrame::DumpFrame(int indent, std::string_view className, std::string_view memberName, Style style)
    : m_indent(indent), m_className(className), m_memberName(memberName), m_style(style) {
    std::fflush(stdout);
    PrintLine("Entering", "\n");
}

DumpFrame::~DumpFrame() {
    PrintLine("Exiting", "\n\n");
    std::fflush(stdout);
}

void DumpFrame::PrintLine(const char* direction, const char* trailer) const {
    PrintIndent(m_indent);
    std::printf("[DEBUG keltemporalxmp::%.*s::%.*s%s] %s%s", Width(m_className), m_className.data(),
                Width(m_memberName), m_memberName.data(), m_style == Style::kCall ? "()" : "", direction, trailer);
}

void FieldLines::PrintName(std::string_view name) const {
    PrintIndent(m_indent);
    std::printf("%.*s=", Width(name), name.data());
    const int used = m_indent + Width(name) + 1;
    if (used < m_column) {
        std::printf("%*s", m_column - used, "");
    }
}

void FieldLines::Text(std::string_view name, const std::string& value) const {
    PrintName(name);
    std::printf("'%s'\n", value.c_str());
}

void FieldLines::Boolean(std::string_view name, bool value) const {
    PrintName(name);
    std::printf("'%s'\n", value ? "true" : "false");
}

void FieldLines::Pointer(std::string_view name, const void* value) const {
    PrintName(name);
    std::printf("'0x%8p'\n", value);
}

void FieldLines::Int32(std::string_view name, std::int32_t value) const {
    PrintName(name);
    std::printf("'%d'\n", static_cast<int>(value));
}

void FieldLines::Enumerated(std::string_view name, std::int32_t value, std::string_view label) const {
    PrintName(name);
    std::printf("'%d' = '%.*s'\n", static_cast<int>(value), Width(label), label.data());
}

void FieldLines::Rate(std::string_view name, std::int64_t value) const {
    PrintName(name);
    std::printf("'%lld'", static_cast<long long>(value));
    PrintUnspecifiedSuffix(value);
    std::printf("\n");
}

void FieldLines::Time(std::string_view name, std::int64_t ticks) const {
    PrintName(name);
    PrintTimeValue(ticks);
    std::printf("\n");
}

void FieldLines::Heading(std::string_view name) const {
    PrintIndent(m_indent);
    std::printf("%.*s:\n", Width(name), name.data());
}

void PrintTimeValue(std::int64_t ticks) {
    std::printf("'%15lld'='%20.15f secs'", static_cast<long long>(ticks),
                XMPDocOpsTemporal::ConvertTicksToSeconds(ticks));
    PrintUnspecifiedSuffix(ticks);
}

void PrintUnspecifiedSuffix(std::int64_t value) {
    if (value == kTimeUnspecified) {
        std::printf("='TIME_UNSPECIFIED'");
    }
}

void PrintIndent(int indent) {
    std::printf("%*s", indent, "");
}

void PrintListItem(int indent, std::string_view name, std::size_t number) {
    PrintIndent(indent);
    std::printf("%.*s[%zu]:\n", Width(name), name.data(), number);
}

}  // namespace keltemporalxmp::diagnostics
