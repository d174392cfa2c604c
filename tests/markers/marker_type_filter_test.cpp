#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include <keltemporalxmp/markers.hpp>

using keltemporalxmp::MarkerTypeFilter;
using keltemporalxmp::MarkerTypeSet;
using keltemporalxmp::UTF16String;

namespace {

kelcore::RefPtr<MarkerTypeFilter> NewFilter() {
    return kelcore::MakeRefCounted<MarkerTypeFilter>();
}

UTF16String ThreadType(int thread, const char16_t* what) {
    UTF16String type = u"thread ";
    type += char16_t(u'0' + thread);
    return type + what;
}

}  // namespace

TEST(MarkerTypeFilter, ModeDecidesWhatTheSetMeans) {
    const auto filter = NewFilter();
    EXPECT_TRUE(filter->GetExclusiveMode());
    EXPECT_TRUE(filter->Validate(u"Chapter"));
    EXPECT_TRUE(filter->Validate(u""));

    filter->SetExclusiveMode(false);
    EXPECT_FALSE(filter->Validate(u"Chapter"));
    EXPECT_FALSE(filter->Validate(u""));

    filter->AddMarkerTypes({u"Chapter", u""});
    const struct {
        const char16_t* type;
        bool inSet;
    } cases[] = {{u"Chapter", true}, {u"", true}, {u"chapter", false}, {u"Chapter ", false}, {u"Cue", false}};
    for (const bool exclusive : {false, true}) {
        filter->SetExclusiveMode(exclusive);
        for (const auto& c : cases) EXPECT_EQ(filter->Validate(c.type), c.inSet != exclusive);
    }
}

TEST(MarkerTypeFilter, AddAndRemoveAreIdempotentAndNarrowTypesAreUTF8) {
    const auto filter = NewFilter();
    filter->RemoveMarkerType(u"Cue");
    filter->AddMarkerType(UTF16String(u"Cue"));
    filter->AddMarkerTypes({u"Cue", u"Chapter", u"Speech"});
    filter->RemoveMarkerTypes({u"Speech", u"Absent"});
    filter->AddMarkerType(kelcore::UTF8String("Kapitel \xC3\xA9 \xF0\x9F\x8E\xAC"));
    filter->AddMarkerType(kelcore::UTF8String("bad \xFF"));
    EXPECT_EQ(filter->GetFilterList(), (MarkerTypeSet{u"Chapter", u"Cue", u"Kapitel é 🎬", u"bad \uFFFD"}));

    filter->SetExclusiveMode(false);
    filter->RemoveAllMarkerTypes();
    EXPECT_TRUE(filter->GetFilterList().empty());
    EXPECT_FALSE(filter->GetExclusiveMode());
}

// Threads share one filter while adding, removing, validating and switching
// mode; the sanitizer build with threads checks the locking, and the final
// set shows that no update was lost.
TEST(MarkerTypeFilter, SharedBetweenThreads) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 2000;
    const auto filter = NewFilter();

    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([filter, t] {
            const UTF16String kept = ThreadType(t, u" kept");
            const UTF16String passing = ThreadType(t, u" passing");
            const UTF16String passingToo = ThreadType(t, u" passing too");
            for (int round = 0; round < kRounds; ++round) {
                filter->AddMarkerType(passing);
                filter->AddMarkerTypes({kept, passingToo});
                filter->SetExclusiveMode(!filter->GetExclusiveMode());
                static_cast<void>(filter->Validate(passing));
                if (!filter->GetFilterList().contains(kept)) ADD_FAILURE() << "lost a type";
                filter->RemoveMarkerType(passing);
                filter->RemoveMarkerTypes({passingToo});
                filter->AddMarkerType(kelcore::UTF8String("shared"));
                if (round % 100 == 0) filter->RemoveMarkerType(u"shared");
            }
        });
    }
    for (std::thread& thread : threads) thread.join();

    MarkerTypeSet expected{u"shared"};
    for (int t = 0; t < kThreads; ++t) expected.insert(ThreadType(t, u" kept"));
    EXPECT_EQ(filter->GetFilterList(), expected);
}
