#include "TextScan.hpp"

namespace keltemporalxmp::exchange {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t TrailingBackslashes(std::string_view text) {
    std::size_t count = 0;
    while (count < text.size() && text[text.size() - 1 - count] == '\\') {
        ++count;
    }
    return count;
}

}  // namespace

bool TextScan::Take(char c) {
    if (AtEnd() || m_text[m_position] != c) {
        return false;
    }
    ++m_position;
    return true;
}

bool TextScan::Take(std::string_view text) {
    if (!Rest().starts_with(text)) {
        return false;
    }
    m_position += text.size();
    return true;
}

std::size_t TextScan::SkipBlanks() {
    const std::size_t start = m_position;
    while (!AtEnd() && (m_text[m_position] == ' ' || m_text[m_position] == '\t')) {
        ++m_position;
    }
    return m_position - start;
}

std::string_view TextScan::Word() {
    const std::size_t start = m_position;
    while (!AtEnd() && m_text[m_position] != ' ' && m_text[m_position] != '\t') {
        ++m_position;
    }
    return m_text.substr(start, m_position - start);
}

std::optional<std::int64_t> TextScan::Number(std::size_t minDigits, std::size_t maxDigits) {
    std::size_t end = m_position;
    while (end < m_text.size() && IsDigit(m_text[end])) {
        ++end;
    }
    const std::size_t digits = end - m_position;
    if (digits < minDigits || digits > maxDigits || digits > 18) {
        return std::nullopt;
    }
    std::int64_t value = 0;
    for (; m_position < end; ++m_position) {
        value = value * 10 + (m_text[m_position] - '0');
    }
    return value;
}

LineReader::LineReader(std::string_view text, Format format) : m_text(text), m_format(format) {
    if (m_text.starts_with(kByteOrderMark)) {
        m_text.remove_prefix(kByteOrderMark.size());
    }
}

bool LineReader::Next() {
    if (m_next >= m_text.size()) {
        return false;
    }
    const std::size_t lineBreak = m_text.find('\n', m_next);
    const std::size_t end = lineBreak == std::string_view::npos ? m_text.size() : lineBreak;
    m_line = m_text.substr(m_next, end - m_next);
    m_next = end + 1;
    m_number += m_pendingLines + 1;
    m_pendingLines = 0;
    if (m_line.ends_with('\r')) {
        m_line.remove_suffix(1);
    }
    return true;
}

void LineReader::JoinEscapedLineBreaks() {
    const char* begin = m_line.data();
    while (TrailingBackslashes(m_line) % 2 == 1 && m_next < m_text.size()) {
        const std::size_t lineBreak = m_text.find('\n', m_next);
        const std::size_t end = lineBreak == std::string_view::npos ? m_text.size() : lineBreak;
        m_line = std::string_view(begin, m_text.data() + end - begin);
        m_next = end + 1;
        ++m_pendingLines;
        if (m_line.ends_with('\r')) {
            m_line.remove_suffix(1);
        }
    }
}

void LineReader::Fail(std::size_t offset, const std::string& expected) const {
    throw ImportError(m_format, m_number, offset + 1, expected);
}

std::string OneLine(std::string_view text) {
    std::string line(text);
    for (char& c : line) {
        if (c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return line;
}

}  // namespace keltemporalxmp::exchange
