#include "connection/vehiclePorts.h"
#include "endToEnd/programs.h"
#include "forms/formTest.h"
#include "parameters/standardParameters.h"
#include "runner/window/obdPollForm.h"
#include "support/designOf.h"
#include "support/parameterFigures.h"

#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTableView>

#include <charconv>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

/// What the whole program shows of every parameter of the standard.
namespace zint {
namespace {

struct ShownFigure {
    StandardParameter parameter;
    std::optional<double> number;
    std::string words;
    double tolerance = 0;

    /// Whether it has a sample. Words that stand for no number have none.
    bool isSampled() const { return number || parameter.field.hasWords; }

    std::string name() const { return parameter.code + " " + parameter.field.name; }

    /// @param text the value with its unit, or words
    void expectIn(const std::string& text) const
    {
        if (!number) {
            EXPECT_EQ(text, words) << name();
            return;
        }
        double shown = 0;
        const auto rest = std::from_chars(text.data(), text.data() + text.size(), shown).ptr - text.data();
        EXPECT_NEAR(shown, *number, tolerance) << name();
        const std::string unit(parameter.field.unit);
        EXPECT_EQ(text.substr(static_cast<std::size_t>(rest)), unit.empty() ? "" : " " + unit) << name();
    }
};

/// What a vehicle tells, by parameter.
using ToldFigures = std::map<std::uint8_t, const ParameterFigures*>;

/// What a bitmap lists.
std::string listedBy(std::uint8_t bitmap, const ToldFigures& told)
{
    constexpr int listed = 0x20;
    std::string words;
    for (int pid = bitmap + 1; pid <= bitmap + listed; ++pid) {
        const bool isNextBitmap = pid == bitmap + listed;
        if (isNextBitmap ? told.rbegin()->first > pid : told.contains(static_cast<std::uint8_t>(pid)))
            words += (words.empty() ? "" : " ") + hexText(pid, 2);
    }
    return words;
}

/// Nothing for what the vehicle does not have.
std::optional<ShownFigure> shownFigure(const StandardParameter& parameter, const ToldFigures& told)
{
    constexpr int bitmaps = 0x20;
    if (parameter.pid % bitmaps == 0) {
        const std::string words = listedBy(parameter.pid, told);
        return words.empty() ? std::nullopt : std::optional<ShownFigure>({parameter, std::nullopt, words});
    }
    const auto row = told.find(parameter.pid);
    if (row == told.end() || parameter.place >= row->second->fields.size())
        return std::nullopt;
    const Figure& figure = row->second->fields[parameter.place];
    const double exact = figure.tolerance < 0 ? row->second->tolerance : figure.tolerance;
    return ShownFigure{.parameter = parameter,
                       .number = figure.number,
                       .words = std::string(figure.isTold() ? figure.words : "not supported"),
                       .tolerance = exact * 1.7 + 1e-9}; // with what is rounded where it is shown
}

/// Parameters with all of their fields, as many together as a run takes, in the order of the table.
std::vector<std::vector<ShownFigure>> shownFigures(bool fourBanks)
{
    constexpr std::size_t many = 46; // leaves room for a parameter's fields, and for those that are not told
    ToldFigures told;
    for (const ParameterFigures& row : parameterFigures()) {
        if (row.banks != (fourBanks ? Banks::two : Banks::four))
            told[row.pid] = &row;
    }
    std::vector<std::vector<ShownFigure>> runs(1);
    for (const StandardParameter& parameter : standardParameters()) {
        if (parameter.place == 0 && runs.back().size() >= many)
            runs.emplace_back();
        if (const auto shown = shownFigure(parameter, told))
            runs.back().push_back(*shown);
    }
    return runs;
}

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

/// Polls the parameters by the command line.
void expectStreamed(const Simulator& simulator, const std::vector<ShownFigure>& figures,
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
        for (const std::vector<ShownFigure>& figures : shownFigures(fourBanks)) {
            expectStreamed(simulator, figures, "");
            expectStreamed(simulator, figures, " --combine");
            expectInGrid(figures);
            for (const ShownFigure& figure : figures)
                unseen.erase(figure.name());
        }
    }
    for (const char* name : {"01C0 Supported parameters C1 to E0", "01E0 Supported parameters E1 to FF"})
        unseen.erase(name); // there is nothing to list
    EXPECT_EQ(unseen, std::set<std::string>()) << "no vehicle tells these";
}

} // namespace
} // namespace zint
