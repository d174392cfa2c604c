#pragma once
// Both readers on one packet, and their answers as text to compare.

#include <string>
#include <string_view>
#include <vector>

#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/streamread.hpp>

namespace streamread_test {

using namespace keltemporalxmp;

// Every field of every record, or the error raised.
std::string Describe(const std::vector<XMPTrack>& tracks);

struct Answer {
    bool handedOver = false;  // the streaming reader only
    std::string text;         // Describe, or "error: " + the message
};

Answer ToolkitAnswer(std::string_view packet);
Answer StreamAnswer(std::string_view packet, std::size_t pieceBytes = 0);

}  // namespace streamread_test
