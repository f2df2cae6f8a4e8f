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
    using Counted = std::vector<std::int64_t>;

    ScriptedAdapter adapter;
    ManualTimer timer;
    ManualClock clock;
    ScriptedPrompts prompts;
    TextBox box;
    Terminal terminal{{adapter, timer, clock, prompts, box}, {.port = PortNumber{3}}};

    void getReady(const TerminalOptions& options = {})
    {
        terminal.setOptions(options);
        adapter.expectOpening();
        terminal.pressOpenCom();
        adapter.play();
        ASSERT_EQ(terminal.panel().statusBox, "com3 Ready");
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

    /// Status, counters, captions, and what is enabled.
    std::string face() const
    {
        const TerminalPanel& p = terminal.panel();
        return p.statusBox + "|" + p.labelStats + "|" + p.openCom.caption + "|" + p.repeatCom.caption + "|" +
               (p.mnuOpenCom ? "open " : "") + (p.mnuCloseCom ? "close " : "") +
               (p.sendCom.enabled ? "send " : "") + (p.sendIsDefault ? "default " : "") +
               (timer.enabled() ? "timer " : "");
    }

    /// The counters in the order of the statistics: received, then sent, then failed.
    Counted counted() const
    {
        const TerminalCounters& c = terminal.counters();
        return {c.bytesIn,     c.messagesReceived, c.bytesOut,      c.commandsSent,
                c.totalErrors, c.messageUnderflow, c.commandFailed, c.commandSyntaxErrors};
    }
};

} // namespace zint
