#include "catalogue/design.h"
#include "support/checksum.h"

#include <gtest/gtest.h>

#include <string>

namespace zint {
namespace {

std::string asText(const Design& design)
{
    std::string text;
    for (std::int32_t i = 1; i <= design.eventCount(); ++i) {
        const DesignEntry& event = design.entries.at(static_cast<std::size_t>(i));
        text += event.code + "\t" + event.description;
        for (const auto number :
             {event.conversion, event.frequency, event.offset, event.reserved1, event.reserved2})
            text += "\t" + std::to_string(number);
        text += "\n";
    }
    return text;
}

TEST(DesignTest, DefaultPollsEveryReadableParameterInEveryTenthPass)
{
    Design design;
    loadDefaultDesign(design);
    EXPECT_EQ(design.title(), "Default Settings");
    EXPECT_EQ(design.eventCount(), 31);
    EXPECT_EQ(design.polledCount(), 22);
    EXPECT_FALSE(design.isCommitted());
    EXPECT_EQ(design.sampleSpeed, 200);

    const auto offsetOf = [&](std::size_t pid) { return design.entries[pid].offset; };
    EXPECT_EQ(offsetOf(0x0A), 9);
    EXPECT_EQ(offsetOf(0x0B), 0);
    EXPECT_EQ(offsetOf(0x1B), 6);
    EXPECT_EQ(design.entries[2].frequency, 0) << "unused";
    EXPECT_EQ(design.entries[31].code, "011F");
    EXPECT_EQ(checksum(asText(design)), 0xd89922102a7e3dabU) << asText(design);
}

TEST(DesignTest, DefaultReplacesWhatWasThere)
{
    Design design;
    for (DesignEntry& entry : design.entries)
        entry = {"0100", "old", 1, 2, 3, 4, 5};
    design.extraCommands = "ATH1";
    design.sampleSpeed = Design::automaticSpeed;

    loadDefaultDesign(design);

    Design fresh;
    loadDefaultDesign(fresh);
    EXPECT_EQ(asText(design), asText(fresh));
    EXPECT_EQ(design.entries[32].description, "");
    EXPECT_EQ(design.extraCommands, "");
    EXPECT_EQ(design.sampleSpeed, Design::automaticSpeed) << "the speed belongs to the adapter";
}

TEST(DesignTest, IsCommittedWhenAllItsEventsArePolled)
{
    Design design;
    design.eventCount() = 3;
    design.polledCount() = 3;
    EXPECT_TRUE(design.isCommitted());
    design.polledCount() = 2;
    EXPECT_FALSE(design.isCommitted());
}

} // namespace
} // namespace zint
