// The toolkit library's own behaviour that the XMP layer works around. If a
// new version of the library changes one of these, the layer must follow.
#include <exempi/xmp.h>
#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>

#include <xmptoolkit/XMP.hpp>

namespace {

const char* const kDM = kXMP_NS_DM;
const char* const kDC = kXMP_NS_DC;

class ExempiTraits : public ::testing::Test {
protected:
    void SetUp() override {
        SXMPMeta initialisesTheToolkit;
        m_xmp = xmp_new_empty();
        m_savedCerr = std::cerr.rdbuf(m_cerr.rdbuf());
    }
    void TearDown() override {
        std::cerr.rdbuf(m_savedCerr);
        xmp_free(m_xmp);
    }
    std::string Value(const char* schemaNS, const char* path) {
        XmpStringPtr text = xmp_string_new();
        xmp_get_property(m_xmp, schemaNS, path, text, nullptr);
        std::string value = xmp_string_cstr(text);
        xmp_string_free(text);
        return value;
    }
    bool Parse(const std::string& packet) { return xmp_parse(m_xmp, packet.data(), packet.size()); }

    XmpPtr m_xmp = nullptr;
    std::ostringstream m_cerr;
    std::streambuf* m_savedCerr = nullptr;
};

const std::string kRdfOpen =
    "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#' xmlns:dc='http://purl.org/dc/elements/1.1/'>";

TEST_F(ExempiTraits, CopySharesTheTree) {
    XmpPtr copy = xmp_copy(m_xmp);
    ASSERT_TRUE(xmp_set_property(copy, kDM, "copied", "yes", 0));
    EXPECT_TRUE(xmp_has_property(m_xmp, kDM, "copied"));
    xmp_free(copy);
}

TEST_F(ExempiTraits, CompositeCreationNeedsEmptyTextAndCompleteArrayForm) {
    EXPECT_TRUE(xmp_set_property(m_xmp, kDM, "s", "", kXMP_PropValueIsStruct));
    EXPECT_FALSE(xmp_set_property(m_xmp, kDM, "seq", "", kXMP_PropArrayIsOrdered));
    EXPECT_EQ(xmp_get_error(), -kXMPErr_BadOptions);
    EXPECT_TRUE(xmp_set_property(m_xmp, kDM, "seq", "", kXMP_PropArrayIsOrdered | kXMP_PropValueIsArray));
}

TEST_F(ExempiTraits, NullValueForAStructCrashes) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(xmp_set_property(m_xmp, kDM, "s", nullptr, kXMP_PropValueIsStruct), "");
}

TEST_F(ExempiTraits, StructItemsAreAppendedWithoutValue) {
    const XMP_OptionBits seq = kXMP_PropArrayIsOrdered | kXMP_PropValueIsArray;
    EXPECT_FALSE(xmp_append_array_item(m_xmp, kDM, "seq", seq, "", kXMP_PropValueIsStruct));
    EXPECT_EQ(xmp_get_error(), -kXMPErr_BadOptions);
    EXPECT_TRUE(xmp_append_array_item(m_xmp, kDM, "seq", seq, nullptr, kXMP_PropValueIsStruct));
}

TEST_F(ExempiTraits, BareRdfParsesToNothing) {
    const std::string rdf = kRdfOpen + "<rdf:Description rdf:about='' dc:format='a/b'/></rdf:RDF>";
    EXPECT_TRUE(Parse(rdf));
    EXPECT_FALSE(xmp_has_property(m_xmp, kDC, "format"));
    EXPECT_TRUE(Parse("<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + rdf + "</x:xmpmeta>"));
    EXPECT_EQ(Value(kDC, "format"), "a/b");
}

TEST_F(ExempiTraits, FailedParsePrintsOnCerrAndKeepsPartialTree) {
    const std::string twoDescriptions = "<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + kRdfOpen +
                                        "<rdf:Description rdf:about='' dc:format='a'/>"
                                        "<rdf:Description rdf:about='' dc:format='b'/></rdf:RDF></x:xmpmeta>";
    EXPECT_FALSE(Parse(twoDescriptions));
    EXPECT_EQ(xmp_get_error(), -kXMPErr_BadXMP);
    EXPECT_EQ(m_cerr.str(), "Duplicate property or field node\n");
    EXPECT_EQ(Value(kDC, "format"), "a");
}

// So a packet round trip is no deep copy.
TEST_F(ExempiTraits, ParsingMakesALoneLanguageAgreeWithTheDefault) {
    ASSERT_TRUE(Parse("<x:xmpmeta xmlns:x='adobe:ns:meta/'>" + kRdfOpen +
                      "<rdf:Description rdf:about=''><dc:title><rdf:Alt><rdf:li xml:lang='x-default'>Hello</rdf:li>"
                      "<rdf:li xml:lang='de'>Hallo</rdf:li></rdf:Alt></dc:title></rdf:Description></rdf:RDF>"
                      "</x:xmpmeta>"));
    EXPECT_EQ(Value(kDC, "title[2]/?xml:lang"), "de");
    EXPECT_EQ(Value(kDC, "title[2]"), "Hello");
}

// Copying alt-text item by item (value, then its xml:lang) is faithful; the
// localized-text calls are not a copy: they invent an x-default and rewrite
// items that share the old default's value.
TEST_F(ExempiTraits, AltTextCopiesItemByItemNotThroughLocalizedText) {
    const XMP_OptionBits altText =
        kXMP_PropArrayIsAltText | kXMP_PropArrayIsAlternate | kXMP_PropArrayIsOrdered | kXMP_PropValueIsArray;
    const char* const items[][2] = {{"de", "Hallo"}, {"x-default", "Hello"}, {"en", "Hello"}};
    int index = 1;
    for (const auto& [lang, value] : items) {
        ASSERT_TRUE(xmp_append_array_item(m_xmp, kDC, "t", altText, value, 0));
        ASSERT_TRUE(xmp_set_property(m_xmp, kDC, ("t[" + std::to_string(index++) + "]/?xml:lang").c_str(), lang, 0));
    }
    EXPECT_EQ(Value(kDC, "t[1]"), "Hallo");
    EXPECT_EQ(Value(kDC, "t[1]/?xml:lang"), "de");
    EXPECT_EQ(Value(kDC, "t[3]"), "Hello");
    EXPECT_EQ(Value(kDC, "t[3]/?xml:lang"), "en");

    ASSERT_TRUE(xmp_set_localized_text(m_xmp, kDC, "l", "", "de", "Hallo", 0));
    EXPECT_EQ(Value(kDC, "l[1]/?xml:lang"), "x-default");
    ASSERT_TRUE(xmp_set_localized_text(m_xmp, kDC, "t", "", "x-default", "Hi", 0));
    EXPECT_EQ(Value(kDC, "t[3]"), "Hi");
}

}  // namespace
