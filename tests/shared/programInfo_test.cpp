#include "shared/programInfo.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

const ProgramInfo example{
    .productName = "Zint", .legalNotice = "Some rights.", .major = 1, .minor = 5, .revision = 0};

TEST(ProgramInfoTest, WritesTheVersionWithoutSeparatorsInHelpAddresses)
{
    EXPECT_EQ(example.helpAddress("https://help.invalid", "docchken2"),
              "https://help.invalid/Zintv150/docchken2.html");
    EXPECT_EQ(example.helpAddress("file:///share/help", ""), "file:///share/help/Zintv150/doctop.html");
}

TEST(ProgramInfoTest, TellsNameVersionAndLicenceInTheAboutBox)
{
    EXPECT_EQ(example.aboutText(), "Zint Version 1.5.0\r\nSome rights.\r\n");
}

TEST(ProgramInfoTest, HasAllItsTexts)
{
    const ProgramInfo& own = programInfo();
    EXPECT_EQ(own.productName, "Zint");
    EXPECT_EQ(own.version(), ZINT_TEST_VERSION) << "the version is set in one place";
    EXPECT_FALSE(own.legalNotice.empty());
    EXPECT_FALSE(own.maker.empty());
    EXPECT_FALSE(own.supportText.empty());
}

} // namespace
} // namespace zint
