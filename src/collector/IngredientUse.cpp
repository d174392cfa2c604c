#include "collector/IngredientUse.hpp"

#include "docops/IngredientLayout.hpp"
#include "docops/PartSpans.hpp"

namespace keltemporalxmp::collector {
namespace {

std::string Field(const SXMPMeta& xmp, const std::string& itemPath, const char* name) {
    return docops::ReadText(xmp, kXMP_NS_XMP_MM, itemPath + "/stRef:" + name);
}

std::optional<Span> ReadPart(const SXMPMeta& xmp, const std::string& itemPath, const char* name) {
    const std::optional<docops::PartSpan> part = docops::TryParsePartSpan(Field(xmp, itemPath, name));
    if (!part) {
        return std::nullopt;
    }
    return Span{part->m_start, part->m_duration};
}

}  // namespace

std::optional<double> IngredientUse::Scale() const {
    const std::int64_t fromDuration = m_from.m_duration != kUnspecified ? m_from.m_duration : m_to.m_duration;
    const std::int64_t toDuration = m_to.m_duration != kUnspecified ? m_to.m_duration : m_from.m_duration;
    if (fromDuration == toDuration) {
        return 1.0;
    }
    if (fromDuration == 0) {
        return std::nullopt;
    }
    return static_cast<double>(toDuration) / static_cast<double>(fromDuration);
}

std::optional<Mapping> IngredientUse::MappingUnder(const Mapping& outer) const {
    const std::optional<double> scale = Scale();
    if (outer.Holds()) {
        // The held instant, seen from the used document.
        if (!outer.MapSpan(m_to.m_start, m_to.End())) {
            return std::nullopt;
        }
        std::int64_t instant = m_from.m_start;
        if (scale && *scale != 0.0) {
            instant = Mapping{m_to.m_start, m_from.m_start, 1.0 / *scale}(outer.m_fromStart);
        }
        return Mapping{instant, outer.m_toStart, outer.m_scale, outer.m_heldFor};
    }
    const std::int64_t toStart = outer(m_to.m_start);
    if (!scale) {
        return Mapping{m_from.m_start, toStart, outer.m_scale, SubtractTimes(outer(m_to.End()), toStart)};
    }
    return Mapping{m_from.m_start, toStart, outer.m_scale * *scale};
}

std::optional<IngredientUse> ReadIngredientUse(const SXMPMeta& xmp, const std::string& itemPath, bool readMaskMarkers) {
    const std::optional<Span> from = ReadPart(xmp, itemPath, "fromPart");
    const std::optional<Span> to = ReadPart(xmp, itemPath, "toPart");
    if (!from || !to) {
        return std::nullopt;
    }
    IngredientUse use{Field(xmp, itemPath, "instanceID"), *from, *to};
    if (docops::IsReversedMapping(Field(xmp, itemPath, "partMapping"))) {
        if (use.m_from.m_duration != kUnspecified) {
            use.m_from = use.m_from.Reversed();
        } else if (use.m_to.m_duration != kUnspecified) {
            use.m_to = use.m_to.Reversed();
        }
    }
    use.m_markersMasked = readMaskMarkers && Field(xmp, itemPath, "maskMarkers") == "All";
    return use;
}

}  // namespace keltemporalxmp::collector
