#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>
#include <vector>

#include <kelcore/DebugDatabase.hpp>

using kelcore::DebugDatabase;

TEST(KelcoreDebugDatabase, ReadsSettingsText) {
    const DebugDatabase database(" a = 1 ;b=two words;;novalue;=orphan;a=3;empty=;c=x=y");
    EXPECT_EQ(database.GetEntry("a", "-"), "3");
    EXPECT_EQ(database.GetEntry("b", "-"), "two words");
    EXPECT_EQ(database.GetEntry("c", "-"), "x=y");
    EXPECT_TRUE(database.HasEntry("empty"));
    EXPECT_EQ(database.GetEntry("empty", "-"), "");
    EXPECT_FALSE(database.HasEntry("novalue"));
    EXPECT_FALSE(database.HasEntry(""));
    EXPECT_EQ(database.GetChangeCount(), 0u);
}

TEST(KelcoreDebugDatabase, EveryChangeMovesTheCount) {
    DebugDatabase database;
    EXPECT_EQ(database.GetEntry("key", "default"), "default");

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

TEST(KelcoreDebugDatabase, SharedInstanceIsSafeAcrossThreads) {
    DebugDatabase& database = DebugDatabase::Instance();
    const std::uint64_t before = database.GetChangeCount();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&database, t] {
            const std::string key = "thread." + std::to_string(t);
            for (int i = 0; i < 100; ++i) {
                database.SetEntry(key, std::to_string(i));
                static_cast<void>(database.GetEntry(key, ""));
            }
            database.RemoveEntry(key);
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(database.GetChangeCount() - before, 4u * 101u);
    EXPECT_EQ(&database, &DebugDatabase::Instance());
}

TEST(KelcoreDebugDatabase, SharedInstanceStartsFromTheEnvironment) {
    // A fresh process, so Instance() reads the variable set just before it.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            setenv(DebugDatabase::kEnvironmentVariable, "BE.Marker.EnableRemoveRedundantTags=true;other=1", 1);
            const DebugDatabase& database = DebugDatabase::Instance();
            const bool loaded = database.GetBooleanEntry("BE.Marker.EnableRemoveRedundantTags", false) &&
                                database.GetEntry("other", "") == "1";
            setenv(DebugDatabase::kEnvironmentVariable, "other=2", 1);
            std::exit(loaded && DebugDatabase::Instance().GetEntry("other", "") == "1" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
