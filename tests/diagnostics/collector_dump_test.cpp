// Golden output of the collection dump: each record under its numbered key,
// the key a time field with the unspecified marker, then the record's dump.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include <keltemporalxmp/collector.hpp>

namespace keltemporalxmp {
namespace {

using Collector = XMPTemporalMetadataCollector;

std::string Dump(const Collector& collector) {
    testing::internal::CaptureStdout();
    collector.debug_Dump();
    return testing::internal::GetCapturedStdout();
}

const char* const kEntering = "[DEBUG keltemporalxmp::XMPTemporalMetadataCollector::debug_Dump()] Entering\n";
const char* const kExiting = "[DEBUG keltemporalxmp::XMPTemporalMetadataCollector::debug_Dump()] Exiting\n\n";

TEST(CollectorDump, EachRecordFollowsItsKey) {
    const SXMPMeta meta;
    EXPECT_EQ(Dump(Collector(0, meta, 0, 100)), std::string(kEntering) + kExiting);
    const std::int64_t unspecified = std::numeric_limits<std::int64_t>::max();
    const std::string from254 = Dump(Collector(Collector::kCollectBaseDocument, meta, 254016000000, unspecified));
    EXPECT_THAT(from254, testing::StartsWith(std::string(kEntering) +
                                             "  MarkerInfo[1] Key='   254016000000'='   1.000000000000000 secs'\n"
                                             "          [DEBUG keltemporalxmp::XMPTemporalMetadataInfo::debug_Dump()] "
                                             "Entering\n"));
    EXPECT_THAT(from254, testing::EndsWith(std::string("Exiting\n\n") + kExiting));
    const std::string unbounded = Dump(Collector(Collector::kCollectBaseDocument, meta, unspecified, unspecified));
    EXPECT_THAT(unbounded, testing::HasSubstr("  MarkerInfo[1] Key='9223372036854775807'='36310201.077313147485256 "
                                              "secs'='TIME_UNSPECIFIED'\n"));
}

}  // namespace
}  // namespace keltemporalxmp
