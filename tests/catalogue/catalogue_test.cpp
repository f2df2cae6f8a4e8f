#include "catalogue/chooser.h"
#include "catalogue/design.h"
#include "catalogue/pidCatalogue.h"
#include "shared/runTimeError.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zint {
namespace {

/// A short stand-in for a long table (64-bit FNV-1a), taken when the table was laid down. A failure means
/// that a name, a blank or a number has changed, and with it what users find in their design files.
void expectUnchanged(const std::ostringstream& table, std::uint64_t checksum)
{
    std::uint64_t sum = 0xcbf29ce484222325U;
    for (const char character : table.str())
        sum = (sum ^ static_cast<unsigned char>(character)) * 0x100000001b3U;
    EXPECT_EQ(sum, checksum) << table.str();
}

TEST(PidCatalogueTest, KeepsItsTables)
{
    std::ostringstream pids;
    for (std::size_t pid = 0; pid < PidNames.size(); ++pid)
        pids << PidNames[pid] << "\t" << PidDefaultConversion[pid] << "\n";
    expectUnchanged(pids, 0x1bf7c1a8fb46ef6aU);
    std::ostringstream conversions;
    for (const Conversion& conversion : ConversionTable)
        conversions << conversion.name << "\t" << conversion.conversionClass << "\n";
    expectUnchanged(conversions, 0x4113ca27ec79120fU);
    std::ostringstream choices;
    for (const std::string_view choice : PollChoices)
        choices << choice << "\n";
    expectUnchanged(choices, 0x51b22271fc4b4bcaU);
}

TEST(DesignTest, DefaultPollsEveryReadableParameterInEveryTenthPass)
{
    Design design;
    for (DesignEntry& entry : design.entries) // what was there goes
        entry = {"0100", "old", 1, 2, 3, 4, 5};
    design.extraCommands = "ATH1";
    design.sampleSpeed = Design::automaticSpeed;
    loadDefaultDesign(design);
    EXPECT_EQ(design.title(), "Default Settings");
    EXPECT_EQ(design.eventCount(), 31);
    EXPECT_EQ(design.polledCount(), 22);
    EXPECT_EQ(design.extraCommands, "");
    EXPECT_EQ(design.sampleSpeed, Design::automaticSpeed) << "the speed belongs to the adapter";
    EXPECT_EQ(Design().sampleSpeed, 200);
    EXPECT_EQ(design.entries[32].description, "");

    std::ostringstream events;
    for (std::size_t i = 1; i < 32; ++i) {
        const DesignEntry& event = design.entries[i];
        EXPECT_EQ(event.reserved1 + event.reserved2, 0);
        events << event.code << "\t" << event.description << "\t" << event.conversion << "\t"
               << event.frequency << "\t" << event.offset << "\t0\t0\n";
    }
    expectUnchanged(events, 0xd89922102a7e3dabU);
}

TEST(ChooserTest, ReadsTheDigitsBeforeTheFirstMark)
{
    EXPECT_EQ(chooserText(13, ConversionTable[13].name), "13> --undef");
    EXPECT_EQ(chooserNumber(PollChoices[6]), 15);
    EXPECT_EQ(chooserNumber("1800>about 10min"), 1800);
    EXPECT_EQ(chooserNumber("7>8>9"), 7);
    for (const std::string_view text : {"", "15", ">name", "abc>5"})
        EXPECT_EQ(chooserNumber(text), 0) << text;
    EXPECT_THROW(chooserNumber("99999999999>x"), RunTimeError);
}

} // namespace
} // namespace zint
