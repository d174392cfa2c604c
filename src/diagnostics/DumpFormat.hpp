#pragma once
// The pieces every debug dump is made of: frame lines, field lines whose
// quoted value starts at a fixed column, and time fields with their seconds.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace keltemporalxmp {
namespace diagnostics {

// Frame indentation by nesting depth; field lines sit two further in.
inline constexpr int kDocumentIndent = 0;
inline constexpr int kListIndent = 2;
inline constexpr int kRecordIndent = 6;
inline constexpr int kMarkerIndent = 10;
inline constexpr int kCuePointIndent = 16;
inline constexpr int kFieldOffset = 2;

// Prints the "Entering" line on construction and the "Exiting" line (and an
// empty line) on destruction; standard output is flushed at both ends so the
// dump does not interleave with buffered output.
class DumpFrame {
public:
    enum class Style { kCall, kBareName };  // "debug_Dump()" or "debug_Dump"

    DumpFrame(int indent, std::string_view className, std::string_view memberName = "debug_Dump",
              Style style = Style::kCall);
    ~DumpFrame();
    DumpFrame(const DumpFrame&) = delete;
    DumpFrame& operator=(const DumpFrame&) = delete;

private:
    void PrintLine(const char* direction, const char* trailer) const;

    int m_indent;
    std::string_view m_className;
    std::string_view m_memberName;
    Style m_style;
};

// Field lines "name=", blanks up to `column`, then the value in quotes.
class FieldLines {
public:
    FieldLines(int indent, int column) : m_indent(indent), m_column(column) {}

    void Text(std::string_view name, const std::string& value) const;
    void Boolean(std::string_view name, bool value) const;
    void Pointer(std::string_view name, const void* value) const;
    void Int32(std::string_view name, std::int32_t value) const;
    // "'value' = 'label'".
    void Enumerated(std::string_view name, std::int32_t value, std::string_view label) const;
    // A frame-rate value; the unspecified value is marked as such.
    void Rate(std::string_view name, std::int64_t value) const;
    // Ticks and seconds; the unspecified value is marked as such.
    void Time(std::string_view name, std::int64_t ticks) const;
    // "name:" alone, heading the items of a list.
    void Heading(std::string_view name) const;

private:
    void PrintName(std::string_view name) const;

    int m_indent;
    int m_column;
};

// "'ticks'='seconds secs'" and, for the unspecified value, its marker.
void PrintTimeValue(std::int64_t ticks);
// The marker behind a value equal to the unspecified time, else nothing.
void PrintUnspecifiedSuffix(std::int64_t value);
void PrintIndent(int indent);
// "name[number]:" on a line of its own.
void PrintListItem(int indent, std::string_view name, std::size_t number);

}  // namespace diagnostics
}  // namespace keltemporalxmp
