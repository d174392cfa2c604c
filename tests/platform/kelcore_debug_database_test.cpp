#include <gtest/gtest.h>

#include <cstdlib>

#include <kelcore/DebugDatabase.hpp>

using kelcore::DebugDatabase;

// The settings come from the environment, as a user types them, and are read once.
TEST(KelcoreDebugDatabase, SharedInstanceReadsTheEnvironmentOnce) {
    // A fresh process, so Instance() reads the variable set just before it.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            setenv(DebugDatabase::kEnvironmentVariable, " a = 1 ;b=two words;;novalue;=orphan;a=3;empty=;c=x=y", 1);
            const DebugDatabase& database = DebugDatabase::Instance();
            setenv(DebugDatabase::kEnvironmentVariable, "a=2", 1);
            const bool parsed = DebugDatabase::Instance().GetEntry("a", "-") == "3" &&
                                database.GetEntry("b", "-") == "two words" && database.GetEntry("c", "-") == "x=y" &&
                                database.GetEntry("empty", "-").empty() && !database.HasEntry("novalue") &&
                                !database.HasEntry("");
            std::exit(parsed ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
