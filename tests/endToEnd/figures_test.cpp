#include "connection/vehiclePorts.h"
#include "endToEnd/programs.h"
#include "forms/formTest.h"
#include "runner/window/obdPollForm.h"
#include "support/designOf.h"
#include "support/shownFigures.h"

#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTableView>

#include <set>
#include <utility>

/// What the whole program shows of every parameter of the standard.
namespace zint {
namespace {

/// What is shown by code and name, of lines of JSON.
std::map<std::string, std::string> shownIn(const std::string& lines)
{
    std::map<std::string, std::string> shown;
    for (const QByteArray& line : QByteArray::fromStdString(lines).split('\n')) {
        const QJsonObject sample = QJsonDocument::fromJson(line).object();
        const QString unit = sample[u"unit"].toString();
        const QString number =
            sample[u"value"].toVariant().toString() + (unit.isEmpty() ? unit : u' ' + unit);
        if (!line.isEmpty())
            shown[fromQt(sample[u"code"].toString() + u' ' + sample[u"name"].toString())] =
                fromQt(sample.contains(u"text") ? sample[u"text"].toString() : number);
    }
    return shown;
}

/// Polls the parameters by the command line. @return how many bytes were sent
int expectStreamed(const Simulator& simulator, const std::vector<ShownFigure>& figures,
                   const std::string& options)
{
    std::string codes;
    for (const ShownFigure& figure : figures)
        codes += figure.parameter.place == 0 ? "," + figure.parameter.code : "";
    const Outcome run =
        runZint(simulator.with("poll --loops 1 --jsonl --events " + codes.substr(1) + options));
    EXPECT_EQ(run.status, 0) << run.errors;
    auto shown = shownIn(run.output);
    for (const ShownFigure& figure : figures) {
        if (figure.isSampled())
            figure.expectIn(shown[figure.name()]);
        shown.erase(figure.name());
    }
    EXPECT_TRUE(shown.empty()) << shown.begin()->first << " is not expected";
    return toQt(run.errors).section(u"Out: "_qs, 1).section(u' ', 0, 0).toInt();
}

struct FiguresEndToEnd : FormTest {
    ~FiguresEndToEnd() override { delete std::exchange(form, nullptr); }

    std::unique_ptr<SerialPort> makePort(EventGate& gate, const ConnectionChoice& /*choice*/) override
    {
        return vehicles.make(gate, PortNumber{1});
    }

    /// Polls the parameters in the window.
    void expectInGrid(const std::vector<ShownFigure>& figures)
    {
        design = designOf({});
        for (const ShownFigure& figure : figures) {
            design.events.push_back(eventFor(figure.parameter, UnitSystem::metric));
            design.events.back().frequency = 1;
        }
        open<obdPollForm>(context);
        type("textSampleCnt", "1");
        click("mnuResetVal");
        click("comStart");
        const QDeadlineTimer patience(patienceMs);
        while (!textOf("statusBox").contains(u"Completed") && !patience.hasExpired())
            QCoreApplication::processEvents(); // without the pauses of waitFor(), one for each reply
        const auto* grid = control<QTableView>("obdGrid")->model();
        for (int row = 0; const ShownFigure& figure : figures) {
            EXPECT_EQ(fromQt(grid->index(row, 0).data().toString()), figure.parameter.field.name);
            figure.expectIn(fromQt(grid->index(row, 1).data().toString()));
            ++row;
        }
    }

    VehiclePorts vehicles{ports};
};

TEST_F(FiguresEndToEnd, EachParameterIsShownWithTheRightFigure)
{
    std::set<std::string> unseen;
    for (const StandardParameter& parameter : standardParameters())
        unseen.insert(parameter.code + " " + parameter.field.name);
    for (const bool fourBanks : {false, true}) {
        SCOPED_TRACE(fourBanks ? "four banks" : "two banks");
        const std::string vehicle = fourBanks ? "four-banks" : "all-parameters";
        const Simulator simulator("--latency 0 --protocol can --moment 634500 --" + vehicle);
        ports.assignForThisRun(PortNumber{1},
                               "simulated:reset-time=0 latency=0 protocol=can moment=634500 " + vehicle);
        int sentAlone = 0;
        int sentTogether = 0;
        for (const std::vector<ShownFigure>& figures : shownFigures(fourBanks)) {
            sentAlone += expectStreamed(simulator, figures, "");
            sentTogether += expectStreamed(simulator, figures, " --combine");
            expectInGrid(figures);
            for (const ShownFigure& figure : figures)
                unseen.erase(figure.name());
        }
        EXPECT_GT(sentAlone, sentTogether);
    }
    for (const char* name : {"01C0 Supported parameters C1 to E0", "01E0 Supported parameters E1 to FF"})
        unseen.erase(name); // there is nothing to list
    EXPECT_EQ(unseen, std::set<std::string>()) << "no vehicle tells these";
}

} // namespace
} // namespace zint
