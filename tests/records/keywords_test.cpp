#include <cstdint>
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
    // Members in a fixed order; a name that is not UTF-8 is written with a replacement character.
    EXPECT_EQ(*KeywordToCuePoint(Keyword("bad \xFF", "p", -1, 2)).GetValuePtr(),
              "{\"name\":\"bad \xEF\xBF\xBD\",\"payload\":\"p\",\"color\":-1,\"index\":2}");
}

TEST(Keyword, IdentityIsFreshUnlessKept) {
    const XMPKeywordData original = Keyword("Tag", "p", 1, 2);
    const XMPKeywordData renewed(original, true);
    EXPECT_NE(renewed.id, original.id);
    EXPECT_EQ(renewed.id.size(), 36u);
    EXPECT_EQ(renewed.m_Extension.m_TagDescription.m_Index, 2);
    EXPECT_EQ(XMPKeywordData(original, false).id, original.id);
}

// Values another writer may have stored: each is either JSON that reads or one of the two errors.
TEST(Keyword, MalformedCuePoints) {
    const std::string key = kKeywordExtKELPrefixV1 + "id";
    for (const char* value : {"not json", "", R"({"name":"a"} trailing)", "\"\xFF\""}) {
        EXPECT_THROW(CuePointToKeyword(XMPCuePointParam(key.c_str(), value)), kelcore::parse_exception) << value;
    }
    for (const char* value : {R"({"color":"red"})", R"({"name":5})", R"({"color":4294967296})",
                              R"({"index":2147483648})", R"({"index":1.0})"}) {
        EXPECT_THROW(CuePointToKeyword(XMPCuePointParam(key.c_str(), value)), kelcore::missing_key_exception) << value;
    }
    const XMPKeywordData lowest = CuePointToKeyword(XMPCuePointParam(key.c_str(), R"({"index":-2147483648})"));
    EXPECT_EQ(lowest.m_Extension.m_TagDescription.m_Index, INT32_MIN);
    EXPECT_THROW(CuePointToKeyword(XMPCuePointParam("short", "{}")), std::out_of_range);

    // JSON that is not an object: an empty keyword with the id from the key.
    const XMPKeywordData fromArray = CuePointToKeyword(XMPCuePointParam(key.c_str(), "[1,2]"));
    EXPECT_EQ(fromArray.m_Name, "");
    EXPECT_EQ(fromArray.id, "id");
}

}  // namespace
