#pragma once

#include "runner/poller.h"
#include "support/designOf.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace zint {

/// An event in revolutions per minute.
inline DesignEntry every(std::int32_t loops, const char* code, std::int32_t offset = 0)
{
    return {.code = code, .conversion = 5, .frequency = loops, .offset = offset};
}

/// A poller of 010C in each loop, with an adapter that follows a script.
struct PollerTest : testing::Test {
    static constexpr const char* good = "41 0C 00 04 \r\r>"; ///< reply to 010C

    TemporaryFolder folder;
    EventGate gate;
    ScriptedAdapter adapter{&gate};
    ManualTimer timer;
    ManualTimer silence;
    ManualTimer ticker;
    ManualClock clock;
    ScriptedPrompts prompts;
    ProgramValues values;
    const DateText dateText = [](auto) { return "today"; };
    KeptRuns kept{folder.path(), dateText};
    std::string device = "/dev/ttyUSB0"; ///< behind the port
    Design design;
    std::optional<Poller> poller;

    PollerTest() { makePoller({every(1, "010C")}); }

    void makePoller(const std::vector<DesignEntry>& events,
                    std::size_t mostRecords = SampleStore::mostRecords)
    {
        design = designOf(events);
        Poller::Surroundings surroundings{
            {adapter, {}, timer, &silence}, ticker, clock, prompts, values, kept, dateText, mostRecords};
        surroundings.device = [this] { return device; };
        poller.emplace(surroundings, design);
        poller->load();
    }

    void setLoops(const char* loops)
    {
        poller->setMaxLoops(loops);
        poller->resetValues();
    }

    /// Starts a run up to its last request. @param requests each with its reply
    void start(const std::vector<std::pair<std::string, const char*>>& requests)
    {
        adapter.expectOpening();
        for (const auto& [request, reply] : requests)
            adapter.expect(request + "\r").answer(reply);
        poller->pressStart();
        adapter.play();
    }

    /// A reply comes while 010C is asked over and over.
    void reply(const char* text = good)
    {
        adapter.expect("010C\r");
        adapter.receive(text);
    }

    void wait(int seconds)
    {
        clock.now += std::chrono::seconds(seconds);
        ticker.tick();
    }

    void pressStop()
    {
        adapter.expect("ATD\r");
        poller->pressStart();
    }

    const PollPanel& panel() const { return poller->panel(); }
};

} // namespace zint
