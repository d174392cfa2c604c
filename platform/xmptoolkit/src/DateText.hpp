#pragma once
// Dates in the ISO 8601 form that XMP uses: "2024-05-17T13:45:10.25+02:00",
// with only as much of the date and time as the value carries.

#include <string>

#include <xmptoolkit/XMP_Const.hpp>

namespace xmptoolkit_detail {

XMP_DateTime CurrentDateTime();
std::string DateText(const XMP_DateTime& date);

}  // namespace xmptoolkit_detail
