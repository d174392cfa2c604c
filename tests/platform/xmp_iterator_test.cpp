#include <gtest/gtest.h>

#include <vector>

#include "xmp_test_packets.hpp"

namespace {

// "path=value" for each node the iterator visits.
std::vector<std::string> Visit(SXMPIterator iterator, const char* skipBelow = "") {
    std::vector<std::string> visited;
    std::string path;
    std::string value;
    while (iterator.Next(nullptr, &path, &value)) {
        visited.push_back(path + "=" + value);
        if (path == skipBelow) {
            iterator.Skip(kXMP_IterSkipSubtree);
        }
    }
    return visited;
}

SXMPMeta SmallTree() {
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_DM, "s", "", kXMP_PropValueIsStruct);
    meta.SetStructField(kXMP_NS_DM, "s", kXMP_NS_DM, "name", "n");
    meta.SetLocalizedText(kXMP_NS_DM, "s/xmpDM:comment", "", "x-default", "c");
    meta.SetProperty(kXMP_NS_DM, "z", "last");
    return meta;
}

TEST(XMPIterator, WalksWithTheToolkitsOptions) {
    const SXMPMeta meta = SmallTree();
    using Paths = std::vector<std::string>;
    EXPECT_EQ(Visit(SXMPIterator(meta, kXMP_NS_DM, kXMP_IterJustChildren | kXMP_IterJustLeafName)),
              (Paths{"xmpDM:s=", "xmpDM:z=last"}));
    // A full walk of a schema starts at the schema node, which has no path.
    EXPECT_EQ(Visit(SXMPIterator(meta, kXMP_NS_DM, kXMP_IterOmitQualifiers), "xmpDM:s"),
              (Paths{"=", "xmpDM:s=", "xmpDM:z=last"}));
}

TEST(XMPIterator, OutlivesItsHandleAndAReparse) {
    SXMPMeta meta = SmallTree();
    SXMPIterator iterator(meta, kXMP_NS_DM, "z", 0);
    const std::string packet = xmp_test::Wrapped("<rdf:Description rdf:about='' xmpDM:z='new'/>");
    meta.ParseFromBuffer(packet.data(), static_cast<XMP_StringLen>(packet.size()));
    meta = SXMPMeta();
    std::string value;
    EXPECT_TRUE(iterator.Next(nullptr, nullptr, &value));
    EXPECT_EQ(value, "last");
    EXPECT_FALSE(iterator.Next());
}

}  // namespace
