#include <gtest/gtest.h>

#include <kelmetadata/NamespaceDefinition.hpp>
#include <xmptoolkit/XMP.hpp>

TEST(NamespaceDefinition, NamesRegisteredSchemasByTheirPrefix) {
    const auto dynamicMedia = kelmetadata::NamespaceDefinition(kXMP_NS_DM);
    EXPECT_EQ(dynamicMedia->GetURI(), kXMP_NS_DM);
    EXPECT_EQ(dynamicMedia->GetSchemaText(), "xmpDM");
    EXPECT_EQ(kelmetadata::NamespaceDefinition(kXMP_NS_XMP_MM)->GetSchemaText(), "xmpMM");

    try {
        kelmetadata::NamespaceDefinition("urn:kel:not-registered/");
        ADD_FAILURE();
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadParam);
        EXPECT_NE(std::string(error.GetErrMsg()).find("urn:kel:not-registered/"), std::string::npos);
    }
}
