#pragma once
// XMPDocOpsTemporal: the temporal operations on an XMP document, and the
// conversions between tick times and the text notations XMP stores them in.

#include <cstdint>
#include <string>

namespace keltemporalxmp {

class XMPDocOpsTemporal {
public:
    // --- Time strings -------------------------------------------------------
    // Stateless. Times are signed tick counts; the library always passes
    // 254016000000 ticks per second. Malformed numbers read as 0 and missing
    // pieces fall back to defaults, but a rate that would be divided by is
    // checked: a zero numerator (and, when writing, a zero denominator) or a
    // tick rate below 1 raises XMP_Error kXMPErr_BadValue naming the rate.
    // Null text reads as empty; a null output raises kXMPErr_BadParam.

    static double ConvertTicksToSeconds(std::int64_t ticks);

    // The rate pointed to is the default for text without a rate; a rate in
    // the text is written back to it.
    static std::int64_t ConvertExternalTimeStringToTicks(const char* timeString, std::int64_t* frameRateNumerator,
                                                         std::int64_t* frameRateDenominator,
                                                         std::int64_t ticksPerSecond);
    // A rate in the text is used but not returned.
    static std::int64_t ConvertExternalTimeStringToTicks(const char* timeString, std::int64_t frameRateNumerator,
                                                         std::int64_t frameRateDenominator,
                                                         std::int64_t ticksPerSecond);
    static void ConvertTicksToExternalTimeString(std::string* timeString, std::int64_t ticks,
                                                 std::int64_t frameRateNumerator, std::int64_t frameRateDenominator,
                                                 std::int64_t ticksPerSecond, bool appendFrameRate);

    static void CreateExternalFrameRateString(std::string* frameRateString, std::int64_t frameRateNumerator,
                                              std::int64_t frameRateDenominator);
    // Always writes both outputs.
    static void ParseExternalFrameRateString(const char* frameRateString, std::int64_t* frameRateNumerator,
                                             std::int64_t* frameRateDenominator);

    static void CreatePartString(std::string* partString, std::int64_t startTime, std::int64_t startTimeNumerator,
                                 std::int64_t startTimeDenominator, std::int64_t duration,
                                 std::int64_t durationNumerator, std::int64_t durationDenominator,
                                 std::int64_t noDuration, const char* path);
    // The rate outputs are in/out like the in/out time-string conversion.
    static void ParsePart(const char* partString, std::int64_t* startTime, std::int64_t* startTimeNumerator,
                          std::int64_t* startTimeDenominator, std::int64_t* duration,
                          std::int64_t* durationNumerator, std::int64_t* durationDenominator,
                          std::int64_t defaultDuration, std::string* path);
};

}  // namespace keltemporalxmp
