#pragma once

#include "link/adapterLink.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"
#include "support/textBox.h"
#include "terminal/terminal.h"

namespace zint {

/// A terminal on com3 whose adapter follows a script.
struct TerminalTest : testing::Test {
    using Pieces = std::vector<std::string>;

    ScriptedAdapter adapter;
    ManualTimer timer;
    ManualClock clock;
    ScriptedPrompts prompts;
    TextBox box;
    Terminal terminal{{adapter, timer, clock, prompts, box}, {.port = PortNumber{3}}};

    void getReady(OutputMode mode = OutputMode::append)
    {
        terminal.setOptions({.mode = mode});
        adapter.expectOpening();
        terminal.pressOpenCom();
        adapter.play();
        ASSERT_EQ(terminal.panel().statusBox, "com3 Ready");
        box.shown.clear();
    }

    /// Presses the button that opens and closes; the adapter gets a command by that, and does not answer.
    void toggle(const char* command)
    {
        adapter.expect(command + std::string("\r"));
        terminal.pressOpenCom();
    }

    /// Sends a command; each piece of the answer is a notification.
    void send(const std::string& command, const Pieces& answer)
    {
        terminal.setCommand(command);
        adapter.expect(command + "\r").pieces = answer;
        terminal.pressSendCom();
        adapter.play();
    }

    /// What is in the box now; it is empty then.
    std::string takeShown() { return std::exchange(box.shown, {}); }

    std::string status() const { return terminal.panel().statusBox; }

    /// Status, counters, captions, and what is on.
    std::string face() const
    {
        const TerminalPanel& p = terminal.panel();
        return p.statusBox + "|" + p.labelStats + "|" + p.openCom.caption + "|" + p.repeatCom.caption + "|" +
               (p.sendCom.enabled ? "send " : "") + (timer.enabled() ? "timer " : "");
    }

    void expectCounters(const TerminalCounters& expected) const
    {
        EXPECT_EQ(terminal.counters().statistics(), expected.statistics());
    }
};

} // namespace zint
