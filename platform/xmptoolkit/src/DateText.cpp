#include "DateText.hpp"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace xmptoolkit_detail {
namespace {

std::string TwoDigits(XMP_Int32 value) {
    char text[16];
    std::snprintf(text, sizeof text, "%02d", static_cast<int>(value));
    return text;
}

std::string YearText(XMP_Int32 year) {
    char text[16];
    std::snprintf(text, sizeof text, year < 0 ? "-%04d" : "%04d", std::abs(static_cast<int>(year)));
    return text;
}

// Nanoseconds as a decimal fraction without trailing zeros: 250000000 -> ".25".
std::string FractionText(XMP_Int32 nanoSecond) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%09d", static_cast<int>(nanoSecond));
    std::string fraction = std::string(".") + digits;
    while (fraction.back() == '0') {
        fraction.pop_back();
    }
    return fraction;
}

std::string TimeZoneText(const XMP_DateTime& date) {
    if (date.tzSign == 0) {
        return "Z";
    }
    return (date.tzSign < 0 ? "-" : "+") + TwoDigits(date.tzHour) + ":" + TwoDigits(date.tzMinute);
}

}  // namespace

XMP_DateTime CurrentDateTime() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    XMP_DateTime date;
    date.year = local.tm_year + 1900;
    date.month = local.tm_mon + 1;
    date.day = local.tm_mday;
    date.hour = local.tm_hour;
    date.minute = local.tm_min;
    date.second = local.tm_sec;
    date.nanoSecond = static_cast<XMP_Int32>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(now.time_since_epoch()).count() % 1000000000);
    date.hasDate = date.hasTime = date.hasTimeZone = true;
    const long offsetMinutes = local.tm_gmtoff / 60;
    date.tzSign = static_cast<XMP_Int8>(offsetMinutes == 0 ? 0 : (offsetMinutes < 0 ? -1 : 1));
    date.tzHour = static_cast<XMP_Int32>(std::labs(offsetMinutes) / 60);
    date.tzMinute = static_cast<XMP_Int32>(std::labs(offsetMinutes) % 60);
    return date;
}

std::string DateText(const XMP_DateTime& date) {
    std::string text = YearText(date.year);
    if (!date.hasTime) {
        if (date.month != 0) {
            text += "-" + TwoDigits(date.month);
            if (date.day != 0) {
                text += "-" + TwoDigits(date.day);
            }
        }
        return text;
    }
    // A time needs the whole date in front of it.
    text += "-" + TwoDigits(std::max(date.month, 1)) + "-" + TwoDigits(std::max(date.day, 1));
    text += "T" + TwoDigits(date.hour) + ":" + TwoDigits(date.minute);
    if (date.second != 0 || date.nanoSecond != 0) {
        text += ":" + TwoDigits(date.second);
        if (date.nanoSecond > 0 && date.nanoSecond < 1000000000) {
            text += FractionText(date.nanoSecond);
        }
    }
    if (date.hasTimeZone) {
        text += TimeZoneText(date);
    }
    return text;
}

}  // namespace xmptoolkit_detail
