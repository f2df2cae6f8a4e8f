#include "app/codesCommand.h"

#include "app/commandSession.h"
#include "codes/codesExchange.h"
#include "codes/codesReport.h"
#include "dtcdb/descriptionSource.h"
#include "platform/qtTimer.h"

#include <QCoreApplication>

namespace zint {
namespace {

/// The exchange and all that it needs.
class CodesRun {
public:
    explicit CodesRun(const CommandLine& line) : line_(line), session_(line.connection)
    {
        exchange_.onChanged = [this] { quitWhenDone(); };
        guard_.onTick = [this] { giveUp(); };
    }

    int run()
    {
        session_.gate.run([this] { begin(); });
        if (exchange_.isRunning())
            QCoreApplication::exec();
        exchange_.unload();
        if (exchange_.succeeded()) {
            const int printed = printOut(codesReport(exchange_.panel(), exchange_.reportedCodeCount()));
            if (exchange_.lacksDescriptions())
                complain(noDatabaseText(session_.values.parmDTCdb));
            return printed;
        }
        if (!session_.prompts.hasComplained)
            complain(exchange_.panel().statusBox); // that is where a port tells its failures
        return exitStatus::failure;
    }

private:
    void begin()
    {
        if (line_.timeout.count() > 0) {
            guard_.setInterval(line_.timeout);
            guard_.setEnabled(true);
        }
        if (line_.clearCodes)
            exchange_.pressClearCodes();
        else
            exchange_.pressGetCodes();
    }

    void quitWhenDone()
    {
        if (!exchange_.isRunning())
            QCoreApplication::quit();
    }

    void giveUp()
    {
        session_.prompts.message("the exchange was not complete after " +
                                 std::to_string(line_.timeout.count()) + " seconds");
        QCoreApplication::quit();
    }

    const CommandLine& line_;
    CommandSession session_;
    QtTimer resetTimer_{session_.gate};
    QtTimer guard_{session_.gate};
    std::unique_ptr<SerialPort> port_ = session_.makePort();
    DtcDescriptionSource descriptions_{session_.values.parmDTCdb, session_.values.descriptionsFile};
    CodesExchange exchange_{*port_,        resetTimer_,      session_.connection(),
                            descriptions_, session_.prompts, session_.values};
};

} // namespace

int runCodesCommand(const CommandLine& line) { return CodesRun(line).run(); }

} // namespace zint
