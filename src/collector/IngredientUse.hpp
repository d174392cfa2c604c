#pragma once
// What the collector needs of one item of an xmpMM:Ingredients array.

#include <optional>
#include <string>

#include <xmptoolkit/XMP.hpp>

#include "collector/TimeMapping.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] collector {

struct IngredientUse {
    std::string m_instanceID;
    // A "linear-reversed" use runs its from-part backwards (or, when that has
    // no duration, its to-part).
    Span m_from;
    Span m_to;
    bool m_markersMasked = false;  // stRef:maskMarkers is "All"

    // Target ticks per source tick; negative for a reversed use. A missing
    // duration takes the other side's. Null for a from-part of zero length
    // that lands on a span of some length: a still frame.
    std::optional<double> Scale() const;
    // How the used document's times land, given how this document's land (see
    // Mapping for a still frame); null when the use lands nowhere.
    std::optional<Mapping> MappingUnder(const Mapping& outer) const;
};

// The struct item at itemPath; null when a part string cannot be read.
std::optional<IngredientUse> ReadIngredientUse(const SXMPMeta& xmp, const std::string& itemPath, bool readMaskMarkers);

}  // namespace gnu::visibility("hidden")]]collector
}  // namespace keltemporalxmp
