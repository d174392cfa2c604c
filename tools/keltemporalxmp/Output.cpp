#include "Output.hpp"

#include <algorithm>
#include <utility>

namespace keltemporalxmp::tool {
namespace {

constexpr int kSchemaVersion = 1;
constexpr const char* kColumnGap = "  ";

// RFC 4180: quoted when it holds a separator, a quote or a line break.
std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char c : text) {
        quoted += c;
        if (c == '"') {
            quoted += '"';
        }
    }
    return quoted + "\"";
}

void WriteCsvLine(std::FILE* out, const std::string* file, const std::vector<std::string>& cells) {
    std::string line = file != nullptr ? CsvField(*file) : "";
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (file != nullptr || i > 0) {
            line += ',';
        }
        line += CsvField(cells[i]);
    }
    std::fprintf(out, "%s\r\n", line.c_str());
}

// Columns line up by characters, not bytes: UTF-8 continuation bytes take no room.
std::size_t DisplayWidth(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

void Table::AddRow(std::vector<std::string> cells) {
    cells.resize(m_columns.size());
    m_rows.push_back(std::move(cells));
}

void Table::WriteAligned(std::FILE* out) const {
    std::vector<std::size_t> widths;
    for (const Column& column : m_columns) {
        widths.push_back(DisplayWidth(column.heading));
    }
    for (const auto& row : m_rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], DisplayWidth(row[i]));
        }
    }
    const auto writeLine = [&](const std::vector<std::string>& cells) {
        std::string line;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::string padding(widths[i] - DisplayWidth(cells[i]), ' ');
            line += i > 0 ? kColumnGap : "";
            line += m_columns[i].alignRight ? padding + cells[i] : cells[i] + padding;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        std::fprintf(out, "%s\n", line.c_str());
    };
    std::vector<std::string> headings;
    for (const Column& column : m_columns) {
        headings.push_back(column.heading);
    }
    writeLine(headings);
    for (const auto& row : m_rows) {
        writeLine(row);
    }
}

void Table::WriteCsv(std::FILE* out, const std::string* file, bool withHeading) const {
    if (withHeading) {
        std::vector<std::string> headings;
        for (const Column& column : m_columns) {
            headings.push_back(column.heading);
        }
        const std::string fileHeading = "file";
        WriteCsvLine(out, file != nullptr ? &fileHeading : nullptr, headings);
    }
    for (const auto& row : m_rows) {
        WriteCsvLine(out, file, row);
    }
}

namespace {

// JSON is written as nlohmann's dump(2) would write the whole document:
// every piece is dumped alone and indented to where it sits.
std::string Dumped(const kelcore::JSONValue& value) {
    return value.dump(2, ' ', false, kelcore::JSONValue::error_handler_t::replace);
}

void WriteIndented(const std::string& text, std::size_t indent) {
    const std::string margin(indent, ' ');
    std::string out;
    out.reserve(text.size() + indent * 8);
    out += margin;
    std::size_t lineStart = 0;
    for (std::size_t newline = text.find('\n'); newline != std::string::npos; newline = text.find('\n', lineStart)) {
        out.append(text, lineStart, newline + 1 - lineStart);
        out += margin;
        lineStart = newline + 1;
    }
    out.append(text, lineStart);
    std::fwrite(out.data(), 1, out.size(), stdout);
}

// An object's members without its closing brace, ready for more.
std::string OpenObject(const kelcore::JSONValue& object) {
    std::string text = Dumped(object);
    text.erase(text.size() - (object.empty() ? 1 : 2));  // "}" or "\n}"
    return text;
}

constexpr std::size_t kEntryIndent = 4;  // a file's entry in "files"
constexpr std::size_t kItemIndent = 8;   // an item of a list in that entry

}  // namespace

Report::Report(OutputFormat format, std::string_view command, bool perFile)
    : m_format(format),
      m_perFile(perFile),
      m_document({{"tool", "keltemporalxmp"}, {"version", kSchemaVersion}, {"command", command}}) {}

// The document's head goes out with the first file, so that a command that
// stops before any file leaves no half document.
void Report::BeginFileEntry() {
    if (m_tablesWritten == 0) {
        std::fputs(OpenObject(m_document).c_str(), stdout);
        std::fputs(",\n  \"files\": [\n", stdout);
    } else {
        std::fputs(",\n", stdout);
    }
}

void Report::Add(const std::string& file, const Table& table, kelcore::JSONValue result) {
    switch (m_format) {
        case OutputFormat::kJson:
            if (m_perFile) {
                kelcore::JSONValue entry = {{"file", file}};
                entry.update(result);
                BeginFileEntry();
                WriteIndented(Dumped(entry), kEntryIndent);
            } else {
                m_document.update(result);
            }
            break;
        case OutputFormat::kCsv:
            table.WriteCsv(stdout, m_perFile ? &file : nullptr, m_tablesWritten == 0);
            break;
        case OutputFormat::kTable:
            if (m_perFile) {
                std::printf("%s%s:\n", m_tablesWritten > 0 ? "\n" : "", file.c_str());
            }
            table.WriteAligned(stdout);
            break;
    }
    ++m_tablesWritten;
    std::fflush(stdout);
}

void Report::BeginJsonList(const std::string& file, const std::string& listName) {
    BeginFileEntry();
    const kelcore::JSONValue entry = {{"file", file}};
    WriteIndented(OpenObject(entry) + ",\n  " + kelcore::JSONValue(listName).dump() + ": [", kEntryIndent);
    m_listItems = 0;
}

void Report::AddJsonItem(const kelcore::JSONValue& item) {
    AddDumpedJsonItem(Dumped(item));
}

void Report::AddDumpedJsonItem(const std::string& dumped) {
    std::fputs(m_listItems == 0 ? "\n" : ",\n", stdout);
    WriteIndented(dumped, kItemIndent);
    ++m_listItems;
}

void Report::EndJsonList() {
    std::fputs(m_listItems == 0 ? "]\n    }" : "\n      ]\n    }", stdout);
    ++m_tablesWritten;
    std::fflush(stdout);
}

void Report::Finish() {
    if (m_format != OutputFormat::kJson) {
        return;
    }
    if (!m_perFile) {
        std::printf("%s\n", Dumped(m_document).c_str());
    } else if (m_tablesWritten == 0) {
        m_document["files"] = kelcore::JSONValue::array();
        std::printf("%s\n", Dumped(m_document).c_str());
    } else {
        std::fputs("\n  ]\n}\n", stdout);
    }
    std::fflush(stdout);
}

}  // namespace keltemporalxmp::tool
