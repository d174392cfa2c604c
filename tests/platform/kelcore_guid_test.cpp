#include <gtest/gtest.h>

#include <set>
#include <string>
#include <unordered_set>

#include <kelcore/Exceptions.hpp>
#include <kelcore/Guid.hpp>
#include <kelcore/Hash.hpp>

using kelcore::Guid;

namespace {

const std::string kCanonical = "0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b";

Guid HashOf(const std::string& text) {
    kelcore::HashValueMixerState state;
    kelcore::UpdateHashState(state, text.data(), text.size());
    Guid result;
    kelcore::GetHashResult(state, result);
    return result;
}

}  // namespace

TEST(KelcoreGuid, DefaultIsNil) {
    EXPECT_TRUE(Guid().IsNil());
    EXPECT_EQ(Guid().AsUTF8String(), "00000000-0000-0000-0000-000000000000");
    EXPECT_EQ(Guid(), Guid("00000000-0000-0000-0000-000000000000"));
}

TEST(KelcoreGuid, ParsesEveryAcceptedFormToTheSameValue) {
    for (const std::string& text : {kCanonical, std::string("{") + kCanonical + "}",
                                   std::string("0123ABCD-4567-89EF-0A1B-2C3D4E5F6A7B"),
                                   std::string("{0123aBcD-4567-89eF-0a1B-2c3d4e5f6a7b}")}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(Guid::IsParsableGuidString(text));
        EXPECT_EQ(Guid(text).AsUTF8String(), kCanonical);
    }
    EXPECT_EQ(Guid(kCanonical).GetBytes()[0], 0x01);
    EXPECT_EQ(Guid(kCanonical).GetBytes()[15], 0x7b);
}

TEST(KelcoreGuid, RejectsMalformedTexts) {
    const char* const invalid[] = {
        "",
        "0123abcd-4567-89ef-0a1b-2c3d4e5f6a7",      // one digit short
        "0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b0",    // one digit long
        "0123abcd04567-89ef-0a1b-2c3d4e5f6a7b",     // hyphen replaced
        "0123abcd-4567-89ef-0a1b2-c3d4e5f6a7b",     // hyphen moved
        "0123abcg-4567-89ef-0a1b-2c3d4e5f6a7b",     // not hex
        "{0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b",    // brace not closed
        "0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b}",    // brace not opened
        "(0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b)",   // wrong brackets
        " 0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b",    // leading space
        "0123abcd45678 9ef0a1b2c3d4e5f6a7b000",     // no hyphens
        "{{0123abcd-4567-89ef-0a1b-2c3d4e5f6a7b}}", // doubled braces
        "+123abcd-4567-89ef-0a1b-2c3d4e5f6a7b",     // sign
    };
    for (const char* text : invalid) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(Guid::IsParsableGuidString(text));
        EXPECT_THROW(Guid{std::string(text)}, kelcore::parse_exception);
    }
}

TEST(KelcoreGuid, CreateUniqueGivesDistinctVersion4Values) {
    std::unordered_set<Guid> seen;
    for (int i = 0; i < 1000; ++i) {
        Guid guid = Guid::CreateUnique();
        ASSERT_FALSE(guid.IsNil());
        EXPECT_EQ(guid.GetBytes()[6] >> 4, 4);          // version
        EXPECT_EQ(guid.GetBytes()[8] & 0xC0, 0x80);     // variant
        EXPECT_TRUE(seen.insert(guid).second);
        EXPECT_EQ(Guid(guid.AsUTF8String()), guid);
    }
}

TEST(KelcoreGuid, OrdersLikeItsText) {
    const Guid low("00000000-0000-0000-ffff-ffffffffffff");
    const Guid high("00000000-0000-0001-0000-000000000000");
    EXPECT_LT(low, high);
    EXPECT_FALSE(high < low);
    EXPECT_NE(low, high);
    std::set<Guid> ordered = {high, low, Guid()};
    EXPECT_EQ(*ordered.begin(), Guid());
    EXPECT_EQ(*ordered.rbegin(), high);
}

TEST(KelcoreHash, IsDeterministicAndIndependentOfPieces) {
    const std::string text = "marker-identifier-that-is-not-a-guid";
    EXPECT_EQ(HashOf(text), HashOf(text));
    EXPECT_FALSE(HashOf(text).IsNil());

    kelcore::HashValueMixerState state;
    kelcore::UpdateHashState(state, text.data(), 5);
    kelcore::UpdateHashState(state, nullptr, 0);
    kelcore::UpdateHashState(state, text.data() + 5, text.size() - 5);
    Guid pieces;
    kelcore::GetHashResult(state, pieces);
    EXPECT_EQ(pieces, HashOf(text));
}

TEST(KelcoreHash, ChangesWithEveryInputDifference) {
    const std::string base = "abcdefgh";
    std::set<Guid> results = {HashOf(""), HashOf(base), HashOf(base + '\0')};
    for (std::size_t i = 0; i < base.size(); ++i) {
        std::string changed = base;
        changed[i] ^= 1;
        results.insert(HashOf(changed));
    }
    EXPECT_EQ(results.size(), 3 + base.size());
}

TEST(KelcoreHash, MatchesTheKnownXxh3Value) {
    // XXH3-128 of no bytes, in big-endian order: pins the function across releases.
    EXPECT_EQ(HashOf("").AsUTF8String(), "99aa06d3-0147-98d8-6001-c324468d497f");
}
