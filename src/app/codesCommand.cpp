#include "app/codesCommand.h"

#include "app/connectionSetup.h"
#include "app/vehiclePorts.h"
#include "codes/codesExchange.h"
#include "codes/codesReport.h"
#include "dtcdb/dtcDatabase.h"
#include "platform/qtSettingsStore.h"
#include "platform/qtTimer.h"
#include "platform/systemPorts.h"

#include <QCoreApplication>

#include <algorithm>
#include <iostream>

namespace zint {
namespace {

/// Says on standard error what went wrong.
void complain(std::string text)
{
    std::erase(text, '\r');
    std::cerr << "zint-obd: " << text << std::endl;
}

/// @return the exit status
int print(const std::string& report)
{
    std::cout << report << std::flush;
    if (std::cout)
        return 0;
    complain("the report could not be written to standard output");
    return 1;
}

/// Tells on standard error; questions were answered on the command line.
class CommandPrompts final : public Prompts {
public:
    void message(const std::string& text, const std::string& /*title*/, const std::string& reason) override
    {
        complain(reason.empty() ? text : text + "\r\n" + reason);
        hasComplained = true;
    }

    std::optional<std::string> input(const std::string& /*text*/, const std::string& /*title*/,
                                     const std::string& /*initial*/) override
    {
        return std::nullopt;
    }

    std::optional<std::size_t> choose(const std::string& /*text*/, const std::string& /*title*/,
                                      const std::vector<std::string>& /*lines*/) override
    {
        return std::nullopt;
    }

    bool confirm(const std::string& /*text*/, const std::string& /*title*/) override { return true; }

    bool hasComplained = false;
};

/// The exchange and all that it needs.
class CodesRun {
public:
    explicit CodesRun(const CommandLine& line) : line_(line)
    {
        gate_.onError = complain;
        applyForThisRun(line.connection, ports_);
        applyForThisRun(line.connection, launcher_);
        launcher_.load();
        port_ = vehiclePorts_.make(gate_, launcher_.connection().portNumber);
        descriptions_.emplace(values_.parmDTCdb);
        exchange_.emplace(*port_, resetTimer_, launcher_.connection(), *descriptions_, prompts_, values_);
        exchange_->onChanged = [this] { quitWhenDone(); };
        guard_.onTick = [this] { giveUp(); };
    }

    int run()
    {
        gate_.run([this] { begin(); });
        if (exchange_->isRunning())
            QCoreApplication::exec();
        if (exchange_->succeeded())
            return print(codesReport(exchange_->panel(), exchange_->reportedCodeCount()));
        if (!prompts_.hasComplained)
            complain(exchange_->panel().statusBox); // that is where a port tells its failures
        return 1;
    }

private:
    void begin()
    {
        if (line_.timeout.count() > 0) {
            guard_.setInterval(line_.timeout);
            guard_.setEnabled(true);
        }
        if (line_.clearCodes)
            exchange_->pressClearCodes();
        else
            exchange_->pressGetCodes();
    }

    void quitWhenDone()
    {
        if (!exchange_->isRunning())
            QCoreApplication::quit();
    }

    void giveUp()
    {
        prompts_.message("the exchange was not complete after " + std::to_string(line_.timeout.count()) +
                             " seconds",
                         {}, {});
        exchange_->unload();
        QCoreApplication::quit();
    }

    const CommandLine& line_;
    QtSettingsStore settings_;
    SystemPorts systemPorts_;
    PortDirectory ports_{settings_, systemPorts_};
    VehiclePorts vehiclePorts_{ports_};
    CommandPrompts prompts_;
    ProgramValues values_;
    Design design_;
    Launcher launcher_{settings_, ports_, prompts_, values_, design_, launcherSystem()};
    EventGate gate_;
    QtTimer resetTimer_{gate_};
    QtTimer guard_{gate_};
    std::unique_ptr<SerialPort> port_;
    std::optional<DtcDatabaseSource> descriptions_;
    std::optional<CodesExchange> exchange_;
};

} // namespace

int runCodesCommand(const CommandLine& line) { return CodesRun(line).run(); }

} // namespace zint
