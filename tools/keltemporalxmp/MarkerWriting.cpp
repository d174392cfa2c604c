#include "MarkerWriting.hpp"

#include <cstdio>
#include <iostream>
#include <set>

#include <keltemporalxmp/docops.hpp>

#include "Documents.hpp"
#include "Errors.hpp"
#include "InputFiles.hpp"
#include "MarkerJson.hpp"

namespace keltemporalxmp::tool {
namespace {

// Tracks store whole frames: a time is kept only when it reads back the same.
bool StoresExactly(std::int64_t ticks, FrameRate rate) {
    return XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(XmpTimeText(ticks, rate).c_str(), rate.numerator,
                                                               rate.denominator, kTicksPerSecond) == ticks;
}

// The number of the first marker with a time that is not a whole frame at rate, or 0.
std::size_t FirstInexactMarker(const MarkerList& markers, FrameRate rate) {
    for (std::size_t i = 0; i < markers.size(); ++i) {
        if (!StoresExactly(markers[i]->GetStartTime().GetTicks(), rate) ||
            !StoresExactly(markers[i]->GetDuration().GetTicks(), rate)) {
            return i + 1;
        }
    }
    return 0;
}

void CheckRate(const MarkerList& markers, FrameRate rate) {
    if (const std::size_t inexact = FirstInexactMarker(markers, rate)) {
        throw InputError("marker " + std::to_string(inexact) + " is not on a whole frame at " + FrameRateText(rate) +
                         "; give another --frame-rate or leave it out");
    }
}

FrameRate WritingRate(const MarkerList& markers, std::optional<FrameRate> given, std::optional<FrameRate> shown) {
    if (given) {
        CheckRate(markers, *given);
        return *given;
    }
    return shown && FirstInexactMarker(markers, *shown) == 0 ? *shown : kTickRate;
}

std::size_t TypeCount(const MarkerList& markers) {
    std::set<UTF16String> types;
    for (const auto& marker : markers) {
        types.insert(marker->GetType());
    }
    return types.size();
}

}  // namespace

std::string ReadSourceText(const std::string& path) {
    if (path != "-") {
        return ReadRegularFile(path, kMaxJsonBytes);
    }
    // Standard input has no size to check first: reading stops one byte past the bound.
    std::string text;
    char buffer[1 << 16];
    while (std::cin.read(buffer, sizeof buffer) || std::cin.gcount() > 0) {
        text.append(buffer, static_cast<std::size_t>(std::cin.gcount()));
        if (text.size() > kMaxJsonBytes) {
            throw InputError("larger than the " + std::to_string(kMaxJsonBytes) + " bytes the tool reads from it");
        }
    }
    if (std::cin.bad()) {
        throw InputError("cannot read it");
    }
    return text;
}

void CheckGivenRate(const MarkersToWrite& markers) {
    if (markers.givenRate) {
        CheckRate(markers.markers, *markers.givenRate);
    }
}

int WriteMarkersToFile(const std::string& file, const MarkersToWrite& markers, const std::string& output, bool merge) {
    return ForEachFile({file}, [&](const std::string&) {
        MarkerList all;
        FrameRate rate;
        // Read, merged and written under the file's lock, so that a concurrent
        // writer's markers are neither lost nor merged twice.
        UpdateDocument(file, output, [&](SXMPMeta& meta) {
            all.clear();
            if (merge) {
                ReadAllMarkers(meta, all);
            }
            all.insert(all.end(), markers.markers.begin(), markers.markers.end());
            rate = WritingRate(all, markers.givenRate, markers.shownRate);
            WriteAllMarkers(all, meta, rate.numerator, rate.denominator);
        });
        std::printf("%s: %zu markers in %zu tracks at %s\n", output.empty() ? file.c_str() : output.c_str(), all.size(),
                    TypeCount(all), FrameRateText(rate).c_str());
    });
}

}  // namespace keltemporalxmp::tool
