// kx.collect, kx.ingredients and kx.pantry: what a composed document is made
// of, and every marker it shows on its own timeline.

#include <string>
#include <vector>

#include <pybind11/stl.h>

#include <keltemporalxmp/collector.hpp>
#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/markers.hpp>

#include "Arguments.hpp"
#include "Bindings.hpp"
#include "Errors.hpp"
#include "Source.hpp"

namespace keltemporalxmp::python {
namespace {

struct Collected {
    std::string form;
    std::string type;
    std::string name;
    std::string track;
    std::string instanceID;
    std::string partMapping;
    std::int64_t start;
    std::int64_t duration;
    std::int64_t clippedStart;
    std::int64_t clippedDuration;
};

struct Ingredient {
    std::string instanceID;
    std::string documentID;
    std::string fromPart;
    std::string toPart;
    std::string partMapping;
    std::string maskMarkers;
    std::string filePath;
};

struct PantryEntry {
    std::string instanceID;
    std::string documentID;
    std::size_t markers;
    int ingredients;
};

std::string Field(const XMPTemporalMetadataInfo& info, XMPTemporalMetadataInfo::_infoFieldEnum field) {
    std::string value;
    info.GetMarkerField(&value, field);
    return value;
}

std::vector<Collected> Collect(py::handle source, py::handle start, py::handle duration, py::handle mask) {
    const Source from = SourceFrom(source);
    const std::int64_t rangeStart = TicksFrom(start, "start");
    const std::int64_t rangeDuration = TicksFrom(duration, "duration");
    if (!PyLong_Check(mask.ptr())) {
        throw ArgumentTypeError("mask must be an int");
    }
    const std::int64_t bits = TicksFrom(mask, "mask");
    if (bits < 0 || bits > 0xFF) {
        throw ArgumentError("mask must be between 0x00 and 0xFF");
    }
    const py::gil_scoped_release unlocked;
    const SXMPMeta meta = LoadSource(from);
    const XMPTemporalMetadataCollector collector(static_cast<unsigned char>(bits), meta, rangeStart, rangeDuration);
    std::vector<Collected> result;
    for (const auto& [key, info] : collector.GetXMPTemporalMetadataInfoCollection()) {
        // Markers written by track keep their type in the track's.
        std::string type = Field(info, XMPTemporalMetadataInfo::kInfoField_MarkerType);
        if (type.empty()) {
            type = Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedTrackType);
        }
        result.push_back({CollectedFormName(info.GetInfoForm()), type,
                          Field(info, XMPTemporalMetadataInfo::kInfoField_Name),
                          Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedTrackName),
                          Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedContainingInstanceID),
                          Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedPartMapping), info.GetStartTime(),
                          info.GetDuration(), info.GetReportedClippedStartTime(), info.GetReportedClippedDuration()});
    }
    return result;
}

std::vector<Ingredient> Ingredients(py::handle source) {
    const Source from = SourceFrom(source);
    const py::gil_scoped_release unlocked;
    SXMPMeta meta = LoadSource(from);
    XMPDocOpsTemporal document;
    document.OpenXMP(&meta, "");
    std::vector<Ingredient> result;
    for (auto entry = document.IngredientListIteratorBegin(); entry != document.IngredientListIteratorEnd(); ++entry) {
        const XMP_internalIngredient& ingredient = entry->second;
        const auto field = [&](XMP_internalIngredient::_ingredientFieldEnum which) {
            return *ingredient.GetIngredientFieldPtr(which);
        };
        result.push_back({field(XMP_internalIngredient::kIngredientFieldInstanceID),
                          field(XMP_internalIngredient::kIngredientFieldDocumentID),
                          field(XMP_internalIngredient::kIngredientFieldFromPart),
                          field(XMP_internalIngredient::kIngredientFieldToPart),
                          field(XMP_internalIngredient::kIngredientFieldPartMapping),
                          field(XMP_internalIngredient::kIngredientFieldMaskMarkers),
                          field(XMP_internalIngredient::kIngredientFieldFilePath)});
    }
    return result;
}

std::string Property(const SXMPMeta& meta, const char* name) {
    std::string value;
    meta.GetProperty(kXMP_NS_XMP_MM, name, &value, nullptr);
    return value;
}

std::vector<PantryEntry> Pantry(py::handle source) {
    const Source from = SourceFrom(source);
    const py::gil_scoped_release unlocked;
    const SXMPMeta meta = LoadSource(from);
    std::vector<PantryEntry> result;
    const int items = meta.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Pantry");
    for (int item = 1; item <= items; ++item) {
        SXMPMeta document;
        XMPDocOpsTemporal::ExtractXMPMetaFromPantry(&document, meta,
                                                    ("xmpMM:Pantry[" + std::to_string(item) + "]").c_str());
        MarkerList markers;
        ReadAllMarkers(document, markers);
        result.push_back({Property(document, "xmpMM:InstanceID"), Property(document, "xmpMM:DocumentID"),
                          markers.size(), document.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Ingredients")});
    }
    return result;
}

// Read-only attributes that convert ticks, so unspecified times come out as None.
template <class Record>
void TicksAttribute(py::class_<Record>& type, const char* name, std::int64_t Record::*member, const char* doc) {
    type.def_property_readonly(
        name, [member](const Record& record) { return TicksObject(record.*member); }, doc);
}

}  // namespace

void BindComposition(py::module_& module) {
    py::class_<Collected> collected(module, "Collected",
                                    "One record of a collection, on the collected document's own timeline.");
    collected
        .def_readonly("form", &Collected::form,
                      "\"report-back\" for a marker, \"component\" for a document (the base document's "
                      "own record, or an ingredient's).")
        .def_readonly("type", &Collected::type, "The marker's type, else its track's; empty for a component.")
        .def_readonly("name", &Collected::name, "The marker's name; \"Base Document\" or \"ComponentMetadata\".")
        .def_readonly("track", &Collected::track, "The name of the track the marker came from.")
        .def_readonly("instance_id", &Collected::instanceID, "Instance ID of the document it came from.")
        .def_readonly("part_mapping", &Collected::partMapping,
                      "How its document's span was placed: \"linear\" or \"linear-reversed\".");
    TicksAttribute(collected, "start", &Collected::start, "Mapped start in ticks; None where unspecified.");
    TicksAttribute(collected, "duration", &Collected::duration,
                   "Mapped duration in ticks (negative when reversed); None where unspecified.");
    TicksAttribute(collected, "clipped_start", &Collected::clippedStart,
                   "Start of the part inside the range and every enclosing span, in ticks.");
    TicksAttribute(collected, "clipped_duration", &Collected::clippedDuration,
                   "Duration of that part in ticks (negative when reversed); None where unspecified.");
    collected.def("__repr__", [](const Collected& record) {
        return py::str("Collected(form={!r}, type={!r}, name={!r}, clipped_start={!r}, clipped_duration={!r})")
            .format(record.form, record.type, record.name, TicksObject(record.clippedStart),
                    TicksObject(record.clippedDuration));
    });

    py::class_<Ingredient>(module, "Ingredient", "One use of a span of a source document in a composed document.")
        .def_readonly("instance_id", &Ingredient::instanceID, "The source's instance ID.")
        .def_readonly("document_id", &Ingredient::documentID, "The source's document ID.")
        .def_readonly("from_part", &Ingredient::fromPart, "The span of the source used, a part string.")
        .def_readonly("to_part", &Ingredient::toPart, "Where it lies in this document, a part string.")
        .def_readonly("part_mapping", &Ingredient::partMapping, "\"linear\", \"linear-reversed\" or empty.")
        .def_readonly("mask_markers", &Ingredient::maskMarkers, "\"All\" (its markers are hidden), \"None\" or empty.")
        .def_readonly("file_path", &Ingredient::filePath, "Where the source file was.")
        .def("__repr__", [](const Ingredient& record) {
            return py::str("Ingredient(instance_id={!r}, from_part={!r}, to_part={!r}, part_mapping={!r})")
                .format(record.instanceID, record.fromPart, record.toPart, record.partMapping);
        });

    py::class_<PantryEntry>(module, "PantryEntry", "One source document kept in a composed document's pantry.")
        .def_readonly("instance_id", &PantryEntry::instanceID, "The document's instance ID.")
        .def_readonly("document_id", &PantryEntry::documentID, "The document's document ID.")
        .def_readonly("markers", &PantryEntry::markers, "How many markers its tracks hold.")
        .def_readonly("ingredients", &PantryEntry::ingredients, "How many ingredients it has itself.")
        .def("__repr__", [](const PantryEntry& record) {
            return py::str("PantryEntry(instance_id={!r}, document_id={!r}, markers={!r}, ingredients={!r})")
                .format(record.instanceID, record.documentID, record.markers, record.ingredients);
        });

    module.def(
        "collect", &Collect, py::arg("source"), py::arg("start") = 0, py::arg("duration") = py::none(),
        py::arg("mask") = 0x0F,
        R"(Every marker a composed document shows in a range of its timeline, its ingredients' at any depth included.

source: a path or an XMP packet as bytes. The range is [start, start +
duration) in ticks; duration None runs to the end. mask chooses what is
collected: 0x01 the document's own record, 0x02 a record per ingredient,
0x04 the document's markers, 0x08 the ingredients' markers, 0x10 ignore
maskMarkers, 0x20 reversed records from their end, 0x40 skip repeated
documents. Records come by clipped start. The GIL is released meanwhile.)");
    module.def("ingredients", &Ingredients, py::arg("source"),
               "The ingredients of a composed document (a path or a packet as bytes), in the document's order.");
    module.def("pantry", &Pantry, py::arg("source"),
               "The source documents a composed document (a path or a packet as bytes) carries in its pantry.");
}

}  // namespace keltemporalxmp::python
