#include <gtest/gtest.h>

#include <string>

#include <kelcore/Exceptions.hpp>
#include <kelcore/Guid.hpp>

using kelcore::Guid;

// Marker IDs read from files: only exact GUID text parses; anything else is hashed.
TEST(KelcoreGuid, ParsesEveryAcceptedFormAndRejectsTheRest) {
    EXPECT_EQ(Guid().AsUTF8String(), "00000000-0000-0000-0000-000000000000");
    const std::string canonical = "0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b";
    for (const std::string& text :
         {canonical, "{" + canonical + "}", std::string("{0123aBcD-4567-89EF-0A1B-2c3d4e5f6a7b}")}) {
        EXPECT_TRUE(Guid::IsParsableGuidString(text)) << text;
        EXPECT_EQ(Guid(text).AsUTF8String(), canonical);
    }
    EXPECT_EQ(Guid(canonical).GetBytes()[15], 0x7b);
    for (const char* text : {"", "0123abcd-4567-89ef-0a1b-2c3d4e5f6a7", "0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b0",
                             "0123abcd04567-89ef-0a1b-2c3d4e5f6a7b", "0123abcg-4567-89ef-0a1b-2c3d4e5f6a7b",
                             "{0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b", "0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b}",
                             " 0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b", "+123abcd-4567-89ef-0a1b-2c3d4e5f6a7b"}) {
        EXPECT_FALSE(Guid::IsParsableGuidString(text)) << text;
        EXPECT_THROW(Guid{std::string(text)}, kelcore::parse_exception) << text;
    }
    EXPECT_LT(Guid("00000000-0000-0000-ffff-ffffffffffff"), Guid("00000000-0000-0001-0000-000000000000"));
}
