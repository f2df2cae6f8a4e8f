#include "catalogue/pidCatalogue.h"
#include "support/checksum.h"

#include <gtest/gtest.h>

#include <string>

namespace zint {
namespace {

// The sums were taken of the tables as they were laid down. A failure here means that a name, a blank or a
// number has changed, and with it what users find in their design files.

TEST(PidCatalogueTest, KeepsItsNamesAndConversions)
{
    std::string table;
    for (std::size_t pid = 0; pid < PidNames.size(); ++pid)
        table += std::string(PidNames[pid]) + "\t" + std::to_string(PidDefaultConversion[pid]) + "\n";
    EXPECT_EQ(checksum(table), 0x1bf7c1a8fb46ef6aU) << table;
}

TEST(PidCatalogueTest, KeepsItsConversionsWithTheirClasses)
{
    std::string table;
    for (const Conversion& conversion : ConversionTable)
        table += std::string(conversion.name) + "\t" + std::to_string(conversion.conversionClass) + "\n";
    EXPECT_EQ(checksum(table), 0x4113ca27ec79120fU) << table;
}

TEST(PidCatalogueTest, KeepsItsPollChoices)
{
    std::string table;
    for (const std::string_view choice : PollChoices)
        table += std::string(choice) + "\n";
    EXPECT_EQ(checksum(table), 0x51b22271fc4b4bcaU) << table;
}

} // namespace
} // namespace zint
