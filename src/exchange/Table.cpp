// Spreadsheet rows, comma- or tab-separated: a header naming the columns,
// then a row per marker with its times as timecode at the rate. A field
// holding the separator, a quote or a line break is quoted, quotes doubled;
// rows end in CRLF.

#include <algorithm>
#include <array>
#include <cctype>

#include "Formats.hpp"
#include "TimeMath.hpp"

namespace keltemporalxmp::exchange {
namespace {

enum Column : std::size_t { kName, kDescription, kIn, kOut, kDuration, kType, kColumnCount };
const std::array<std::string_view, kColumnCount> kHeadings = {"Marker Name", "Description", "In",
                                                              "Out",         "Duration",    "Marker Type"};

char SeparatorOf(Format format) {
    return format == Format::kCSV ? ',' : '\t';
}

std::string Quote(std::string_view field, char separator) {
    if (field.find_first_of(std::string{separator, '"', '\r', '\n'}) == std::string_view::npos) {
        return std::string(field);
    }
    std::string quoted = "\"";
    for (const char c : field) {
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    }
    return quoted + "\"";
}

struct Field {
    std::string text;
    std::size_t line;
    std::size_t column;
};
using Row = std::vector<Field>;

// Fields as quoting rules them, records separated by line breaks outside quotes.
class RowReader {
public:
    RowReader(std::string_view text, Format format) : m_text(text), m_format(format), m_separator(SeparatorOf(format)) {
        if (m_text.starts_with("\xEF\xBB\xBF")) {
            m_text.remove_prefix(3);
        }
    }

    bool Next(Row& row) {
        row.clear();
        if (m_position >= m_text.size()) {
            return false;
        }
        while (true) {
            row.push_back(ReadField());
            if (m_position >= m_text.size()) {
                return true;
            }
            const char c = m_text[m_position++];
            if (c == '\r' && m_position < m_text.size() && m_text[m_position] == '\n') {
                ++m_position;
            }
            if (c == '\r' || c == '\n') {
                NewLine();
                return true;
            }
            ++m_column;  // the separator
        }
    }

private:
    Field ReadField() {
        Field field{"", m_line, m_column};
        if (m_position < m_text.size() && m_text[m_position] == '"') {
            ReadQuoted(field);
            return field;
        }
        while (m_position < m_text.size() && m_text[m_position] != m_separator && m_text[m_position] != '\r' &&
               m_text[m_position] != '\n') {
            if (m_text[m_position] == '"') {
                Fail(m_line, m_column, "a quote only around a whole field");
            }
            field.text += m_text[m_position++];
            ++m_column;
        }
        return field;
    }

    void ReadQuoted(Field& field) {
        ++m_position;
        ++m_column;
        while (true) {
            if (m_position >= m_text.size()) {
                Fail(field.line, field.column, "a closing quote for the field that starts here");
            }
            const char c = m_text[m_position++];
            ++m_column;
            if (c == '"') {
                if (m_position < m_text.size() && m_text[m_position] == '"') {
                    ++m_position;
                    ++m_column;
                } else {
                    break;
                }
            } else if (c == '\n') {
                NewLine();
            }
            field.text += c;
        }
        if (m_position < m_text.size() && m_text[m_position] != m_separator && m_text[m_position] != '\r' &&
            m_text[m_position] != '\n') {
            Fail(m_line, m_column, "a separator or the end of the row after a closing quote");
        }
    }

    void NewLine() {
        ++m_line;
        m_column = 1;
    }

    [[noreturn]] void Fail(std::size_t line, std::size_t column, const std::string& expected) const {
        throw ImportError(m_format, line, column, expected);
    }

    std::string_view m_text;
    Format m_format;
    char m_separator;
    std::size_t m_position = 0;
    std::size_t m_line = 1;
    std::size_t m_column = 1;
};

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

bool IsEmptyRow(const Row& row) {
    return row.size() == 1 && row[0].text.empty();
}

class TableReader {
public:
    TableReader(std::string_view text, Format format, const ImportOptions& options)
        : m_rows(text, format), m_format(format), m_options(options) {}

    Markers Read() {
        Row row;
        if (!m_rows.Next(row)) {
            return {};
        }
        ReadHeader(row);
        Markers markers;
        while (m_rows.Next(row)) {
            if (markers.empty()) {
                GuessRate(row);
            }
            if (!IsEmptyRow(row)) {
                markers.push_back(ReadRow(row));
            }
        }
        return markers;
    }

private:
    void ReadHeader(const Row& header) {
        m_columns.fill(kColumnCount);
        for (std::size_t i = 0; i < header.size(); ++i) {
            for (std::size_t column = 0; column < kColumnCount; ++column) {
                if (Lower(header[i].text) == Lower(kHeadings[column])) {
                    m_columns[column] = i;
                }
            }
        }
        if (m_columns[kIn] == kColumnCount) {
            throw ImportError(m_format, 1, 1, "a header row with an \"In\" column");
        }
    }

    // Without a rate of its own, drop-frame timecode ("00:01:00;02") is at 29.97.
    void GuessRate(const Row& row) {
        const Field* in = Cell(row, kIn);
        if (!m_options.rate.IsKnown() && in != nullptr && in->text.find(';') != std::string::npos) {
            m_rate = {30000, 1001};
        }
    }

    const Field* Cell(const Row& row, Column column) const {
        return m_columns[column] < row.size() ? &row[m_columns[column]] : nullptr;
    }

    std::string Text(const Row& row, Column column) const {
        const Field* field = Cell(row, column);
        return field ? field->text : "";
    }

    std::optional<std::int64_t> Frames(const Row& row, Column column) const {
        const Field* field = Cell(row, column);
        if (field == nullptr || field->text.empty()) {
            return std::nullopt;
        }
        const std::optional<std::int64_t> frames = TimecodeToFrames(field->text, m_rate);
        if (!frames) {
            throw ImportError(m_format, field->line, field->column,
                              "timecode HH:MM:SS:FF at " + std::to_string(m_rate.numerator) + "/" +
                                  std::to_string(m_rate.denominator) + " frames per second");
        }
        return frames;
    }

    std::int64_t Ticks(std::int64_t frames, const Row& row) const {
        const std::optional<std::int64_t> ticks = TicksOfFrames(frames, m_rate);
        if (!ticks) {
            throw ImportError(m_format, row[0].line, row[0].column, "times that fit 64-bit ticks");
        }
        return *ticks;
    }

    ExchangeMarker ReadRow(const Row& row) const {
        const std::optional<std::int64_t> in = Frames(row, kIn);
        if (!in) {
            throw ImportError(m_format, row[0].line, row[0].column, "an In time in every row");
        }
        std::optional<std::int64_t> duration = Frames(row, kDuration);
        if (const std::optional<std::int64_t> out = Frames(row, kOut); out && !duration) {
            duration = *out - *in;
        }
        if (duration && *duration < 0) {
            throw ImportError(m_format, row[0].line, row[0].column, "an Out time not before In");
        }
        ExchangeMarker marker;
        marker.name = Text(row, kName);
        marker.comment = Text(row, kDescription);
        marker.type = Text(row, kType).empty() ? ImportType(m_format, m_options) : Text(row, kType);
        marker.start = Ticks(*in, row);
        marker.duration = duration ? Ticks(*duration, row) : kTimeUnspecified;
        marker.rate = m_rate;
        return marker;
    }

    RowReader m_rows;
    Format m_format;
    const ImportOptions& m_options;
    Rate m_rate = ImportRate(m_options);
    std::array<std::size_t, kColumnCount> m_columns{};
};

}  // namespace

std::string ExportTable(const Markers& markers, Format format, const ExportOptions& options) {
    const Rate rate = ExportRate(markers, options);
    const char separator = SeparatorOf(format);
    auto row = [separator](const std::array<std::string, kColumnCount>& fields) {
        std::string line;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            line += (i > 0 ? std::string(1, separator) : "") + Quote(fields[i], separator);
        }
        return line + "\r\n";
    };
    std::array<std::string, kColumnCount> heading;
    std::copy(kHeadings.begin(), kHeadings.end(), heading.begin());
    std::string text = row(heading);
    for (const std::size_t index : TimelineOrder(markers, format)) {
        const ExchangeMarker& marker = markers[index];
        const std::int64_t in = FramesOfTicks(marker.start, rate);
        const bool timed = marker.duration != kTimeUnspecified;
        const std::int64_t frames = timed ? FramesOfTicks(marker.duration, rate) : 0;
        text += row({marker.name, marker.comment, FramesToTimecode(in, rate),
                     timed ? FramesToTimecode(in + frames, rate) : "", timed ? FramesToTimecode(frames, rate) : "",
                     marker.type});
    }
    return text;
}

Markers ImportTable(std::string_view text, Format format, const ImportOptions& options) {
    return TableReader(text, format, options).Read();
}

}  // namespace keltemporalxmp::exchange
