// Dump of a collection: each record under its key, the clipped start.

#include <keltemporalxmp/collector.hpp>

#include <cstdio>

#include "diagnostics/DumpFormat.hpp"

namespace keltemporalxmp {

void XMPTemporalMetadataCollector::debug_Dump() const {
    const diagnostics::DumpFrame frame(diagnostics::kDocumentIndent, "XMPTemporalMetadataCollector");
    int number = 0;
    for (const auto& [key, marker] : m_collection) {
        diagnostics::PrintIndent(diagnostics::kDocumentIndent + diagnostics::kFieldOffset);
        std::printf("MarkerInfo[%d] Key=", ++number);
        diagnostics::PrintTimeValue(key);
        std::printf("\n");
        marker.debug_Dump();
    }
}

}  // namespace keltemporalxmp
