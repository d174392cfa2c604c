#include "collector/IngredientUse.hpp"

#include <utility>

#include "docops/PartSpans.hpp"

namespace keltemporalxmp::collector {
namespace {

std::optional<Span> ReadPart(const std::string& text) {
    const std::optional<docops::PartSpan> part = docops::TryParsePartSpan(text);
    if (!part) {
        return std::nullopt;
    }
    return Span{part->m_start, part->m_duration};
}

}  // namespace

std::optional<double> IngredientUse::Scale() const {
    const std::int64_t fromDuration = m_from.m_duration != kUnspecifiedTicks ? m_from.m_duration : m_to.m_duration;
    const std::int64_t toDuration = m_to.m_duration != kUnspecifiedTicks ? m_to.m_duration : m_from.m_duration;
    if (fromDuration == toDuration) {
        return 1.0;
    }
    if (fromDuration == 0) {
        return std::nullopt;
    }
    return static_cast<double>(toDuration) / static_cast<double>(fromDuration);
}

std::optional<IngredientUse> ReadIngredientUse(IngredientTexts texts) {
    const std::optional<Span> from = ReadPart(texts.m_fromPart);
    const std::optional<Span> to = ReadPart(texts.m_toPart);
    if (!from || !to) {
        return std::nullopt;
    }
    IngredientUse use{std::move(texts.m_instanceID), *from, *to};
    if (docops::IsReversedMapping(texts.m_partMapping)) {
        if (use.m_from.m_duration != kUnspecifiedTicks) {
            use.m_from = use.m_from.Reversed();
        } else if (use.m_to.m_duration != kUnspecifiedTicks) {
            use.m_to = use.m_to.Reversed();
        }
    }
    use.m_markersMasked = texts.m_maskMarkers == "All";
    return use;
}

}  // namespace keltemporalxmp::collector
