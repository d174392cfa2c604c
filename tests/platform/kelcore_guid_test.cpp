#include <gtest/gtest.h>

#include <set>
#include <string>
#include <unordered_set>

#include <kelcore/Exceptions.hpp>
#include <kelcore/Guid.hpp>
#include <kelcore/Hash.hpp>

using kelcore::Guid;

namespace {

Guid HashOf(const std::string& text, std::size_t split = 0) {
    kelcore::HashValueMixerState state;
    kelcore::UpdateHashState(state, text.data(), split);
    kelcore::UpdateHashState(state, text.data() + split, text.size() - split);
    Guid result;
    kelcore::GetHashResult(state, result);
    return result;
}

}  // namespace

TEST(KelcoreGuid, ParsesEveryAcceptedFormAndRejectsTheRest) {
    EXPECT_EQ(Guid().AsUTF8String(), "00000000-0000-0000-0000-000000000000");
    const std::string canonical = "0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b";
    for (const std::string& text : {canonical, "{" + canonical + "}", std::string("{0123aBcD-4567-89EF-0A1B-2c3d4e5f6a7b}")}) {
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

TEST(KelcoreGuid, CreateUniqueGivesDistinctVersion4Values) {
    std::unordered_set<Guid> seen;
    for (int i = 0; i < 1000; ++i) {
        Guid guid = Guid::CreateUnique();
        EXPECT_EQ(guid.GetBytes()[6] >> 4, 4);       // version
        EXPECT_EQ(guid.GetBytes()[8] & 0xC0, 0x80);  // variant
        EXPECT_TRUE(seen.insert(guid).second);
    }
}

TEST(KelcoreHash, IsDeterministicAndChangesWithEveryInputDifference) {
    const std::string base = "abcdefgh";
    EXPECT_EQ(HashOf(base, 5), HashOf(base));
    // XXH3-128 of no bytes, big-endian: pins the function across releases.
    EXPECT_EQ(HashOf("").AsUTF8String(), "99aa06d3-0147-98d8-6001-c324468d497f");
    std::set<Guid> results = {HashOf(""), HashOf(base), HashOf(base + '\0')};
    for (std::size_t i = 0; i < base.size(); ++i) {
        std::string changed = base;
        changed[i] ^= 1;
        results.insert(HashOf(changed));
    }
    EXPECT_EQ(results.size(), 3 + base.size());
}
