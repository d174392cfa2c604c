#pragma once
// What a command prints: an aligned table for people, CSV, or one JSON
// document for programs (the schema is described in SCHEMA.md).

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <kelcore/JSON.hpp>

namespace keltemporalxmp::tool {

enum class OutputFormat { kTable, kJson, kCsv };

struct Column {
    std::string heading;
    bool alignRight = false;  // numbers
};

class Table {
public:
    explicit Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}

    // One cell per column.
    void AddRow(std::vector<std::string> cells);

    void WriteAligned(std::FILE* out) const;
    // With a leading "file" column when `file` is given.
    void WriteCsv(std::FILE* out, const std::string* file, bool withHeading) const;

private:
    std::vector<Column> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

// Collects a command's results file by file and writes them in the chosen
// format, as they come: tables and CSV, and JSON results that belong to files
// (one document, written piece by piece). A result without a file is written
// as one document at the end.
class Report {
public:
    // `perFile`: results belong to files (named in the output); otherwise
    // there is one result with no file.
    Report(OutputFormat format, std::string_view command, bool perFile);

    // `result` holds the command's members for this file (an object).
    void Add(const std::string& file, const Table& table, kelcore::JSONValue result);

    // JSON of a file whose last member, the array `listName`, is written item
    // by item, so that a long list is never whole in memory.
    void BeginJsonList(const std::string& file, const std::string& listName);
    void AddJsonItem(const kelcore::JSONValue& item);
    // An item already in the text its dump (two-space indent) would give.
    void AddDumpedJsonItem(const std::string& dumped);
    void EndJsonList();

    // Ends the JSON document; nothing for the other formats.
    void Finish();

private:
    void BeginFileEntry();

    OutputFormat m_format;
    bool m_perFile;
    int m_tablesWritten = 0;
    int m_listItems = 0;
    kelcore::JSONValue m_document;
};

}  // namespace keltemporalxmp::tool
