#include <gtest/gtest.h>

#include <cstdlib>

#include <kelcore/DebugDatabase.hpp>

using kelcore::DebugDatabase;

TEST(KelcoreDebugDatabase, ReadsSettingsText) {
    const DebugDatabase database(" a = 1 ;b=two words;;novalue;=orphan;a=3;empty=;c=x=y");
    EXPECT_EQ(database.GetEntry("a", "-"), "3");
    EXPECT_EQ(database.GetEntry("b", "-"), "two words");
    EXPECT_EQ(database.GetEntry("c", "-"), "x=y");
    EXPECT_EQ(database.GetEntry("empty", "-"), "");
    EXPECT_FALSE(database.HasEntry("novalue"));
    EXPECT_FALSE(database.HasEntry(""));
}

TEST(KelcoreDebugDatabase, EveryChangeMovesTheCount) {
    DebugDatabase database;
    EXPECT_EQ(database.GetChangeCount(), 0u);
    database.SetEntry("key", "true");
    EXPECT_EQ(database.GetChangeCount(), 1u);
    EXPECT_TRUE(database.GetBooleanEntry("key", false));
    database.SetEntry("key", "TRUE");
    EXPECT_FALSE(database.GetBooleanEntry("key", true));
    database.RemoveEntry("key");
    EXPECT_FALSE(database.HasEntry("key"));
    EXPECT_TRUE(database.GetBooleanEntry("key", true));
    database.RemoveEntry("key");
    EXPECT_EQ(database.GetChangeCount(), 4u);
}

TEST(KelcoreDebugDatabase, SharedInstanceStartsFromTheEnvironmentOnce) {
    // A fresh process, so Instance() reads the variable set just before it.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            setenv(DebugDatabase::kEnvironmentVariable, "BE.Marker.EnableRemoveRedundantTags=true;other=1", 1);
            const bool loaded = DebugDatabase::Instance().GetBooleanEntry("BE.Marker.EnableRemoveRedundantTags", false);
            setenv(DebugDatabase::kEnvironmentVariable, "other=2", 1);
            std::exit(loaded && DebugDatabase::Instance().GetEntry("other", "") == "1" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
