#include <string>

#include <gtest/gtest.h>

#include <kelcore/Exceptions.hpp>
#include <keltemporalxmp/records.hpp>

#include "records/KeywordCuePoints.hpp"

namespace {

using namespace keltemporalxmp;

XMPKeywordData Keyword(const char* name, const char* payload, int color, int index) {
    XMPKeywordExtension extension;
    extension.m_TagDescription = {payload, color, index};
    return XMPKeywordData(name, extension);
}

TEST(Keyword, CuePointRoundTripKeepsEverySetFieldAndLeavesUnsetOnesOut) {
    for (const XMPKeywordData& original : {Keyword("Tag", "pay", -16711936, 3), Keyword("", "", 0, 0),
                                           Keyword("only name", "", 0, 0), Keyword("", "", 0, -2)}) {
        const XMPCuePointParam cuePoint = KeywordToCuePoint(original);
        EXPECT_EQ(*cuePoint.GetKeyPtr(), kKeywordExtKELPrefixV1 + original.id);
        const XMPKeywordData back = CuePointToKeyword(cuePoint);
        EXPECT_EQ(back.m_Name, original.m_Name);
        EXPECT_EQ(back.m_Extension.m_TagDescription.m_Payload, original.m_Extension.m_TagDescription.m_Payload);
        EXPECT_EQ(back.m_Extension.m_TagDescription.m_ARGBColor, original.m_Extension.m_TagDescription.m_ARGBColor);
        EXPECT_EQ(back.m_Extension.m_TagDescription.m_Index, original.m_Extension.m_TagDescription.m_Index);
        EXPECT_EQ(back.id, original.id);
    }
    EXPECT_EQ(*KeywordToCuePoint(Keyword("Tag", "", 0, 0)).GetValuePtr(), R"({"name":"Tag"})");
    EXPECT_EQ(*KeywordToCuePoint(Keyword("", "", 0, 0)).GetValuePtr(), "{}");
}

TEST(Keyword, IdentityIsFreshUnlessKept) {
    const XMPKeywordData original = Keyword("Tag", "p", 1, 2);
    const XMPKeywordData renewed(original, true);
    EXPECT_NE(renewed.id, original.id);
    EXPECT_EQ(renewed.id.size(), 36u);
    EXPECT_EQ(renewed.m_Extension.m_TagDescription.m_Index, 2);
    EXPECT_EQ(XMPKeywordData(original, false).id, original.id);
}

TEST(Keyword, MalformedCuePoints) {
    const std::string key = kKeywordExtKELPrefixV1 + "id";
    EXPECT_THROW(CuePointToKeyword(XMPCuePointParam(key.c_str(), "not json")), kelcore::parse_exception);
    EXPECT_THROW(CuePointToKeyword(XMPCuePointParam(key.c_str(), R"({"color":"red"})")),
                 kelcore::missing_key_exception);
    EXPECT_THROW(CuePointToKeyword(XMPCuePointParam(key.c_str(), R"({"name":5})")), kelcore::missing_key_exception);
    EXPECT_THROW(CuePointToKeyword(XMPCuePointParam("short", "{}")), std::out_of_range);

    // JSON that is not an object: an empty keyword with the id from the key.
    const XMPKeywordData fromArray = CuePointToKeyword(XMPCuePointParam(key.c_str(), "[1,2]"));
    EXPECT_EQ(fromArray.m_Name, "");
    EXPECT_EQ(fromArray.id, "id");
}

}  // namespace
