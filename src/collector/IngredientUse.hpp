#pragma once
// What the collector needs of one item of a document's ingredient list.

#include <optional>
#include <string>

#include "collector/TimeMapping.hpp"

namespace keltemporalxmp {
namespace collector {

struct IngredientUse {
    std::string m_instanceID;
    // A "linear-reversed" use runs its from-part backwards (or, when that has
    // no duration, its to-part).
    Span m_from;
    Span m_to;
    bool m_markersMasked = false;  // stRef:maskMarkers is "All"

    // Target ticks per source tick; negative for a reversed use. A missing
    // duration takes the other side's. Null for a from-part of zero length
    // that lands on a span of some length.
    std::optional<double> Scale() const;
};

// The texts of an item's stRef fields.
struct IngredientTexts {
    std::string m_instanceID;
    std::string m_fromPart;
    std::string m_toPart;
    std::string m_partMapping;
    std::string m_maskMarkers;
};

// Null when a part string cannot be read.
std::optional<IngredientUse> ReadIngredientUse(IngredientTexts texts);

}  // namespace collector
}  // namespace keltemporalxmp
