// Whole documents in the pantry: extracting one, finding one, applying a
// template to all, and stripping the document down to its identity.

#include <keltemporalxmp/docops.hpp>

#include "docops/IngredientLayout.hpp"
#include "timestrings/Arguments.hpp"

namespace keltemporalxmp {

using docops::kPantryPath;

namespace {

// Clears a pantry item without renumbering its siblings.
void DeleteFields(SXMPMeta& meta, const std::string& itemPath) {
    std::vector<std::string> fields;
    SXMPIterator children(meta, kXMP_NS_XMP_MM, itemPath.c_str(), kXMP_IterJustChildren | kXMP_IterJustLeafName);
    std::string name;
    XMP_OptionBits options = 0;
    while (children.Next(nullptr, &name, nullptr, &options)) {
        if ((options & kXMP_PropIsQualifier) == 0) {
            fields.push_back(itemPath + '/' + name);
        }
    }
    for (const std::string& field : fields) {
        meta.DeleteProperty(kXMP_NS_XMP_MM, field.c_str());
    }
}

}  // namespace

void XMPDocOpsTemporal::ExtractXMPMetaFromPantry(SXMPMeta* out, const SXMPMeta& doc, const char* itemPath) {
    if (out == nullptr) {
        docops::ThrowNullMeta();
    }
    const std::string item(TextOrEmpty(itemPath));
    // Filling a handle on doc itself must not read what it is erasing.
    const SXMPMeta source = docops::SharesTree(*out, doc) ? doc.Clone() : doc;
    out->Erase();
    if (item.empty()) {
        SXMPUtils::DuplicateSubtree(source, out, "*", "*");
        return;
    }
    // Each field of the item becomes a top-level property, with everything below it.
    SXMPIterator children(source, kXMP_NS_XMP_MM, item.c_str(), kXMP_IterJustChildren | kXMP_IterJustLeafName);
    std::string schemaNS;
    std::string name;
    XMP_OptionBits options = 0;
    while (children.Next(&schemaNS, &name, nullptr, &options)) {
        if ((options & kXMP_PropIsQualifier) == 0) {
            SXMPUtils::DuplicateSubtree(source, out, kXMP_NS_XMP_MM, (item + '/' + name).c_str(), schemaNS.c_str(),
                                        name.c_str());
        }
    }
}

bool XMPDocOpsTemporal::LookupXMPPantryPathGivenInstanceId(const SXMPMeta& doc, const char* instanceID,
                                                           std::string* path) {
    std::string& output = Required(path, "XMPDocOpsTemporal::LookupXMPPantryPathGivenInstanceId", "path");
    const std::string_view wanted = TextOrEmpty(instanceID);
    if (wanted.empty()) {
        return false;
    }
    if (docops::DocumentInstanceID(doc) == wanted) {
        output.clear();
        return true;
    }
    for (docops::ListItem& item : docops::StructItems(doc, kPantryPath)) {
        if (docops::PantryItemInstanceID(doc, item.m_path) == wanted) {
            output = std::move(item.m_path);
            return true;
        }
    }
    return false;
}

// Works on the XMP itself: pending pantry edits are written first, and the
// cache is read again when next needed, so that it holds the result.
void XMPDocOpsTemporal::ApplyTemplateToPantry(const SXMPMeta& templateXMP, unsigned int actions) {
    SXMPMeta& meta = MetaToWrite();
    if (m_cachedPantryData && m_hasPantryDataChanged) {
        WritePantry();
    }
    for (const docops::ListItem& item : docops::StructItems(meta, kPantryPath)) {
        SXMPMeta document;
        ExtractXMPMetaFromPantry(&document, meta, item.m_path.c_str());
        SXMPUtils::ApplyTemplate(&document, templateXMP, actions);
        DeleteFields(meta, item.m_path);
        SXMPUtils::DuplicateSubtree(document, &meta, "*", "*", kXMP_NS_XMP_MM, item.m_path.c_str());
        m_hasPantryDataChanged = true;
    }
    ErasePantry();
    m_cachedPantryData = false;
}

void XMPDocOpsTemporal::StripXMPExceptInstanceID() {
    SXMPMeta& meta = MetaToWrite();
    PrepareForSave("", 0);
    const std::string instanceID = docops::DocumentInstanceID(meta);
    meta.Erase();
    m_tracks.clear();
    m_ingredients.clear();
    ErasePantry();
    if (!instanceID.empty()) {
        meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", instanceID.c_str());
    }
}

}  // namespace keltemporalxmp
