#pragma once
// Reading text a piece at a time, for the line-based importers: a cursor
// over one line that knows its column, and the lines of a whole text that
// know their number, so every error can say where it is.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <keltemporalxmp/exchange.hpp>

namespace keltemporalxmp::exchange {

class TextScan {
public:
    explicit TextScan(std::string_view text) : m_text(text) {}

    bool AtEnd() const { return m_position == m_text.size(); }
    // Bytes read so far; the column of the next byte is one more.
    std::size_t Position() const { return m_position; }
    std::string_view Rest() const { return m_text.substr(m_position); }
    char Peek() const { return AtEnd() ? '\0' : m_text[m_position]; }
    bool Take(char c);
    bool Take(std::string_view text);
    // Spaces and tabs; how many.
    std::size_t SkipBlanks();
    // Up to the next space or tab, or the end.
    std::string_view Word();
    // Between minDigits and maxDigits decimal digits (at most 18); nothing,
    // and nothing read, for fewer or more.
    std::optional<std::int64_t> Number(std::size_t minDigits, std::size_t maxDigits);

private:
    std::string_view m_text;
    std::size_t m_position = 0;
};

class LineReader {
public:
    // A leading byte order mark is not part of the first line.
    LineReader(std::string_view text, Format format);

    // Moves to the next line (without its line break); false past the last.
    bool Next();
    std::string_view Line() const { return m_line; }
    std::size_t Number() const { return m_number; }
    // The line break, when the line ended with a backslash escaping it, is read as part of it.
    void JoinEscapedLineBreaks();

    // ImportError on this line, `offset` bytes into it.
    [[noreturn]] void Fail(std::size_t offset, const std::string& expected) const;

private:
    std::string_view m_text;
    std::size_t m_next = 0;
    std::string_view m_line;
    std::size_t m_number = 0;
    std::size_t m_pendingLines = 0;  // joined into the current line
    Format m_format;
};

// Marker text on one line: every line break becomes a space.
std::string OneLine(std::string_view text);

}  // namespace keltemporalxmp::exchange
