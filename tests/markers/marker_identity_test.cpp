#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <keltemporalxmp/markers.hpp>

using keltemporalxmp::Marker;
using kelcore::Guid;

namespace {

// Hosts attach their own data to markers by building on Marker.
class HostMarker : public Marker {
public:
    explicit HostMarker(std::shared_ptr<void> data) { AttachExtension(std::move(data)); }
};

void ExpectFreshIdentity(const Marker& marker) {
    EXPECT_FALSE(marker.GetGUID().IsNil());
    EXPECT_EQ(marker.GetMarkerID(), marker.GetGUID().AsUTF8String());
}

}  // namespace

TEST(MarkerIdentity, DefaultAndEmptyIdentifierGetAFreshGuid) {
    const Marker first;
    const Marker second;
    const Marker fromEmpty("");
    ExpectFreshIdentity(first);
    ExpectFreshIdentity(second);
    ExpectFreshIdentity(fromEmpty);
    EXPECT_NE(first, second);
    EXPECT_NE(first.GetGUID(), fromEmpty.GetGUID());
}

TEST(MarkerIdentity, GuidTextsAreParsedAndKeptVerbatim) {
    for (const std::string text : {"{6B29FC40-CA47-1067-B31D-00DD010662DA}", "6b29fc40-ca47-1067-b31d-00dd010662da",
                                   "6B29fc40-CA47-1067-b31d-00DD010662DA"}) {
        const Marker marker(text);
        EXPECT_EQ(marker.GetMarkerID(), text);
        EXPECT_EQ(marker.GetGUID(), Guid(text)) << text;
    }
}

TEST(MarkerIdentity, OtherTextsHashToAStableGuid) {
    for (const std::string text : {"clip-marker-7", "6b29fc40-ca47-1067-b31d-00dd010662d", "é", " "}) {
        const Marker first(text);
        const Marker second(text);
        EXPECT_EQ(first.GetMarkerID(), text);
        EXPECT_FALSE(first.GetGUID().IsNil()) << text;
        EXPECT_EQ(first.GetGUID(), second.GetGUID()) << text;
        EXPECT_EQ(first, second) << text;
    }
    EXPECT_NE(Marker("clip-marker-7").GetGUID(), Marker("clip-marker-8").GetGUID());
}

TEST(MarkerIdentity, SetGuidAlsoSetsTheMarkerID) {
    Marker marker("any text at all");
    const Guid guid("{6B29FC40-CA47-1067-B31D-00DD010662DA}");
    marker.SetGuid(guid);
    EXPECT_EQ(marker.GetGUID(), guid);
    EXPECT_EQ(marker.GetMarkerID(), "6b29fc40-ca47-1067-b31d-00dd010662da");
}

TEST(MarkerCopies, IdentityCopiesDropTheExtensionPlainCopiesShareIt) {
    auto data = std::make_shared<int>(7);
    HostMarker original(data);
    original.SetName(u"Intro");
    original.SetStartTime(kelmediatypes::TickTime(254016000000));
    original.SetCuePointList({{u"k", u"v"}});

    const Marker sameIdentity(original, false);
    const Marker newIdentity(original, true);
    EXPECT_EQ(sameIdentity, original);
    EXPECT_EQ(sameIdentity.GetExtension(), nullptr);
    EXPECT_EQ(newIdentity.GetExtension(), nullptr);
    ExpectFreshIdentity(newIdentity);
    EXPECT_NE(newIdentity.GetGUID(), original.GetGUID());
    EXPECT_NE(newIdentity, original);
    EXPECT_EQ(newIdentity.GetName(), u"Intro");
    EXPECT_EQ(newIdentity.GetStartTime(), original.GetStartTime());
    EXPECT_EQ(newIdentity.GetCuePointList().size(), 1u);

    const Marker copy(original);
    EXPECT_EQ(copy.GetExtension(), data);
    EXPECT_EQ(copy, original);

    Marker assigned(HostMarker(std::make_shared<int>(8)));
    const std::weak_ptr<void> previous = assigned.GetExtension();
    assigned = original;
    EXPECT_TRUE(previous.expired());
    EXPECT_EQ(assigned.GetExtension(), data);
    EXPECT_EQ(assigned.GetMarkerID(), original.GetMarkerID());
    EXPECT_EQ(data.use_count(), 4);  // data, original, copy, assigned
}
