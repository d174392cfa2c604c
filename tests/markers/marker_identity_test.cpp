#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <keltemporalxmp/markers.hpp>

using kelcore::Guid;
using keltemporalxmp::Marker;

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

TEST(MarkerIdentity, IdentifierTextGivesTheGuid) {
    const Marker first;
    const Marker fromEmpty("");
    ExpectFreshIdentity(first);
    ExpectFreshIdentity(fromEmpty);
    EXPECT_NE(first.GetGUID(), fromEmpty.GetGUID());

    // GUID text is parsed and kept verbatim; any other text hashes to a stable GUID.
    const std::string guidText = "{6B29FC40-CA47-1067-B31D-00DD010662DA}";
    EXPECT_EQ(Marker(guidText).GetMarkerID(), guidText);
    EXPECT_EQ(Marker(guidText).GetGUID(), Guid(guidText));
    for (const std::string text : {"clip-marker-7", "6b29fc40-ca47-1067-b31d-00dd010662d", " "}) {
        EXPECT_EQ(Marker(text).GetMarkerID(), text);
        EXPECT_FALSE(Marker(text).GetGUID().IsNil()) << text;
        EXPECT_EQ(Marker(text), Marker(text)) << text;
    }
    EXPECT_NE(Marker("clip-marker-7").GetGUID(), Marker("clip-marker-8").GetGUID());

    Marker marker("any text at all");
    marker.SetGuid(Guid(guidText));
    EXPECT_EQ(marker.GetMarkerID(), "6b29fc40-ca47-1067-b31d-00dd010662da");
}

TEST(MarkerCopies, IdentityCopiesDropTheExtensionPlainCopiesShareIt) {
    auto data = std::make_shared<int>(7);
    HostMarker original(data);
    original.SetName(u"Intro");

    const Marker sameIdentity(original, false);
    const Marker newIdentity(original, true);
    EXPECT_EQ(sameIdentity, original);
    EXPECT_EQ(sameIdentity.GetExtension(), nullptr);
    EXPECT_EQ(newIdentity.GetExtension(), nullptr);
    ExpectFreshIdentity(newIdentity);
    EXPECT_NE(newIdentity.GetGUID(), original.GetGUID());
    EXPECT_EQ(newIdentity.GetName(), u"Intro");

    const Marker copy(original);
    EXPECT_EQ(copy.GetExtension(), data);
    Marker assigned(HostMarker(std::make_shared<int>(8)));
    const std::weak_ptr<void> previous = assigned.GetExtension();
    assigned = original;
    EXPECT_TRUE(previous.expired());
    EXPECT_EQ(data.use_count(), 4);  // data, original, copy, assigned
}
