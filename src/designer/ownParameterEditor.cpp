#include "designer/ownParameterEditor.h"

#include "designer/listedNames.h"
#include "parameters/ownReply.h"
#include "parameters/parameterCsv.h"
#include "shared/fileError.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <sstream>
#include <utility>

namespace zint {
namespace {

using FaultyField = decltype(ParameterFault::field);

const FileKinds csvKinds{.extension = "csv", .filter = "CSV (*.csv)|*.csv|" + textFileKinds.filter};

std::string numberText(double number)
{
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

/// With a point or a comma; nothing for what is no number.
std::optional<double> numberIn(std::string text)
{
    std::ranges::replace(text, ',', '.');
    const std::string_view digits = trimmed(text);
    double number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(number))
        return std::nullopt;
    return number;
}

std::string rangeFault(const OwnParametersPanel& panel)
{
    if (panel.minimum.empty() && panel.maximum.empty())
        return {};
    const auto minimum = numberIn(panel.minimum);
    const auto maximum = numberIn(panel.maximum);
    if (!minimum || !maximum)
        return "minimum and maximum are numbers, such as -40 and 215, or both empty";
    return *minimum < *maximum ? "" : "the minimum must be below the maximum";
}

std::string hexBytes(BytesView data)
{
    std::string text;
    for (const std::uint8_t byte : data)
        text += (text.empty() ? "" : " ") + hexText(byte, 2);
    return text;
}

std::string outcomeText(const Tried& tried)
{
    const std::string data = tried.data.empty() ? "" : "Data " + hexBytes(tried.data) + ": ";
    return data + tried.text + (tried.isOutside ? " (outside of its range)" : "");
}

std::string linesText(const CsvImport& import)
{
    constexpr std::size_t mostLines = 200;
    std::string text;
    for (std::size_t i = 0; i < std::min(import.refused.size(), mostLines); ++i)
        text += "\r\n" + lineText(import.refused[i]);
    return import.refused.size() > mostLines ? text + "\r\n..." : text;
}

} // namespace

OwnParameterEditor::OwnParameterEditor(Surroundings surroundings)
    : around_(std::move(surroundings)), reading_(around_.line, around_.prompts), table_(around_.file.load())
{
    reading_.onChanged = [this] {
        panel_.statusBox = reading_.status();
        changed();
    };
    reading_.onReply = [this](const std::string& reply) { typeReply(reply); };
    show(table_.all().empty() ? std::nullopt : std::optional<std::size_t>(0));
}

void OwnParameterEditor::select(std::size_t row)
{
    if (panel_.current != row && mayLeave() && row < table_.all().size())
        show(row);
    changed();
}

void OwnParameterEditor::show(std::optional<std::size_t> row)
{
    panel_.current = row;
    forgetReply();
    load(row ? *table_.all().at(*row) : OwnParameter());
    changed();
}

void OwnParameterEditor::load(const OwnParameter& parameter)
{
    panel_.fields = parameter;
    const bool hasRange = parameter.maximum > parameter.minimum;
    panel_.minimum = hasRange ? numberText(parameter.minimum) : "";
    panel_.maximum = hasRange ? numberText(parameter.maximum) : "";
}

/// A new parameter stands below those of the table until it is saved.
void OwnParameterEditor::begin(OwnParameter parameter)
{
    parameter.number = 0;
    parameter.name = table_.freeName(parameter.name);
    untouched_ = parameter;
    panel_.current = table_.all().size();
    panel_.statusBox.clear();
    forgetReply();
    load(parameter);
}

/// It was another one's, or would be.
void OwnParameterEditor::forgetReply()
{
    if (reading_.isOpen()) {
        reading_.close();
        panel_.statusBox = reading_.status();
    }
    panel_.reply.clear();
}

void OwnParameterEditor::addNew()
{
    if (!mayLeave())
        return;
    begin({.name = "New parameter", .formula = "A"});
    changed();
}

void OwnParameterEditor::copy()
{
    if (!panel_.current || !mayLeave())
        return;
    if (panel_.current)
        begin(*table_.all().at(*panel_.current));
    leaveField();
}

void OwnParameterEditor::remove()
{
    if (!panel_.current)
        return;
    const std::size_t row = *panel_.current;
    const std::int32_t number = panel_.fields.number;
    const std::size_t uses = isNew() ? 0 : around_.usesOf(number);
    std::string question = "Delete \"" + panel_.fields.name + "\" (" + panel_.fields.request + ")?";
    if (uses > 0)
        question += "\r\n\r\nThe present design uses it: " + std::to_string(uses) +
                    (uses == 1 ? " row gives" : " rows give") + " no values then.";
    if (!around_.prompts.confirm(question, "Own Parameters"))
        return;
    if (!isNew())
        changeTable([number](OwnParameters& table) { table.remove(number); });
    const std::size_t count = table_.all().size();
    panel_.statusBox = "Deleted";
    show(count == 0 ? std::nullopt : std::optional(std::min(row, count - 1)));
}

void OwnParameterEditor::type(TextField field, const std::string& text)
{
    panel_.fields.*field = text;
    changed();
}

void OwnParameterEditor::typeRange(RangeField field, const std::string& text)
{
    panel_.*field = text;
    changed();
}

void OwnParameterEditor::typeReply(const std::string& text)
{
    panel_.reply = text;
    changed();
}

void OwnParameterEditor::leaveField()
{
    if (panel_.current)
        store();
    changed();
}

bool OwnParameterEditor::leave()
{
    if (!mayLeave())
        return false;
    reading_.close();
    return true;
}

bool OwnParameterEditor::isUntouched() const
{
    return isNew() && panel_.fields == untouched_ && panel_.fields.request.empty();
}

bool OwnParameterEditor::isChanged() const
{
    const OwnParameterPointer kept = table_.find(panel_.fields.number);
    return !kept || normalised(panel_.fields) != *kept;
}

/// Saves the current parameter if it has changed. @return false when it can't be used
bool OwnParameterEditor::store()
{
    takeRange();
    showFaults();
    if (!panel_.faults.empty())
        return false;
    if (!isChanged())
        return true;
    StoredParameter stored;
    changeTable([&](OwnParameters& table) { stored = table.put(panel_.fields); });
    if (!stored.parameter) { // another program has taken its name
        panel_.faults = {*stored.fault};
        return false;
    }
    const auto place = std::ranges::find(table_.all(), stored.parameter->number,
                                         [](const OwnParameterPointer& own) { return own->number; });
    panel_.statusBox = "\"" + stored.parameter->name + "\" saved";
    panel_.current = static_cast<std::size_t>(place - table_.all().begin());
    load(*stored.parameter);
    return true;
}

/// Saves the current parameter if it has changed. @return why it can't be saved; empty when it is
std::string OwnParameterEditor::storeFailure()
{
    try {
        return store() ? "" : faultText(panel_.faults.front());
    } catch (const FileError& error) {
        return error.what();
    }
}

void OwnParameterEditor::takeRange()
{
    const bool hasRange = rangeFault(panel_).empty() && !panel_.minimum.empty();
    panel_.fields.minimum = hasRange ? *numberIn(panel_.minimum) : 0;
    panel_.fields.maximum = hasRange ? *numberIn(panel_.maximum) : 0;
}

/// Saves the current parameter, or asks whether to forget what was typed.
bool OwnParameterEditor::mayLeave()
{
    const bool isSettled = !panel_.current || settle();
    changed();
    return isSettled;
}

bool OwnParameterEditor::settle()
{
    const std::string failure = isUntouched() ? "" : storeFailure();
    if (!failure.empty() && !around_.prompts.confirm("\"" + panel_.fields.name + "\" can't be saved: " +
                                                         failure + ".\r\n\r\nForget what was typed?",
                                                     "Own Parameters"))
        return false;
    const std::size_t count = table_.all().size();
    if (*panel_.current >= count) {
        panel_.current = count == 0 ? std::nullopt : std::optional(count - 1);
        forgetReply();
    }
    load(panel_.current ? *table_.all().at(*panel_.current) : OwnParameter());
    return true;
}

void OwnParameterEditor::changeTable(const std::function<void(OwnParameters&)>& change)
{
    table_ = around_.file.change(change);
    around_.onStored();
}

/// The parameters of the table that a file would replace; empty when there are none.
std::vector<std::string> OwnParameterEditor::replacedNames(const std::string& text) const
{
    OwnParameters copy = table_;
    std::istringstream stream(text);
    const CsvImport import = importCsv(stream, copy, SameName::replace);
    std::vector<std::string> names;
    names.reserve(import.replaced.size());
    for (const OwnParameterPointer& parameter : import.replaced)
        names.push_back(parameter->name);
    return names;
}

void OwnParameterEditor::importFile()
{
    const std::string path =
        mayLeave() ? around_.dialogs.chooseToOpen(csvKinds, around_.values.parmInitDir) : "";
    if (path.empty())
        return;
    const std::string text = contentOf(path);
    const std::vector<std::string> names = replacedNames(text);
    const bool replaces =
        !names.empty() &&
        around_.prompts.confirm("The file has parameters of the same names as yours, and with "
                                "other meanings:" +
                                    listedNames(names) + "\r\n\r\nReplace yours?",
                                "Own Parameters");
    CsvImport import;
    changeTable([&](OwnParameters& table) {
        std::istringstream stream(text);
        import = importCsv(stream, table, replaces ? SameName::replace : SameName::keep);
    });
    around_.values.rememberFolderOf(path);
    panel_.statusBox = importText(import);
    show(table_.all().empty() ? std::nullopt : std::optional(table_.all().size() - 1));
    if (!import.refused.empty())
        around_.prompts.message(importText(import) + ":\r\n" + linesText(import), "Own Parameters");
}

void OwnParameterEditor::exportFile()
{
    const std::string path =
        mayLeave() ? around_.dialogs.chooseToSave(csvKinds, around_.values.parmInitDir, "parameters.csv")
                   : "";
    if (path.empty())
        return;
    std::size_t filters = 0;
    replaceFile(path, [&](std::ostream& stream) { filters = exportCsv(stream, table_); });
    around_.values.rememberFolderOf(path);
    panel_.statusBox = fileNamePart(path) + " saved";
    if (filters > 0)
        panel_.statusBox += "; the receive filters of " + std::to_string(filters) +
                            " parameters have no column there and are left out";
    changed();
}

void OwnParameterEditor::readFromCar()
{
    takeRange();
    for (const ParameterFault& fault : panel_.faults) {
        if (fault.field == FaultyField::request || fault.field == FaultyField::header ||
            fault.field == FaultyField::filter) {
            around_.prompts.message("There is nothing to ask yet: " + faultText(fault));
            return;
        }
    }
    if (panel_.current)
        reading_.begin(normalised(panel_.fields));
}

void OwnParameterEditor::changed()
{
    showList();
    showFaults();
    showOutcome();
    panel_.canRead = panel_.current && !reading_.isOpen();
    if (onChanged)
        onChanged();
}

void OwnParameterEditor::showList()
{
    panel_.list.clear();
    for (const OwnParameterPointer& parameter : table_.all())
        panel_.list.push_back(parameter->name);
    panel_.hint.clear();
    if (!panel_.current)
        return;
    if (isNew()) {
        panel_.list.push_back(panel_.fields.name + " (not saved)");
        panel_.hint = "It is saved as soon as it has a name, a request and a formula.";
        return;
    }
    const std::size_t uses = around_.usesOf(panel_.fields.number);
    panel_.hint = "Number " + std::to_string(panel_.fields.number) +
                  (uses == 0 ? ", not used in this design"
                             : ", used in " + std::to_string(uses) + (uses == 1 ? " row" : " rows") +
                                   " of this design");
}

void OwnParameterEditor::showFaults()
{
    panel_.faults.clear();
    if (!panel_.current)
        return;
    if (auto fault = table_.faultOf(normalised(panel_.fields)); fault && fault->field != FaultyField::formula)
        panel_.faults.push_back(*fault);
    if (const Formula formula(panel_.fields.formula); formula.fault())
        panel_.faults.push_back({FaultyField::formula, formula.fault()->position, formula.fault()->text});
    if (const std::string fault = rangeFault(panel_); !fault.empty())
        panel_.faults.push_back({FaultyField::range, 0, fault});
}

void OwnParameterEditor::showOutcome()
{
    panel_.outcome.clear();
    panel_.hasValue = false;
    if (!panel_.current || trimmed(panel_.reply, " \r\n").empty())
        return;
    takeRange();
    const Tried tried = tryOut(normalised(panel_.fields), panel_.reply);
    panel_.outcome = outcomeText(tried);
    panel_.hasValue = tried.number.has_value();
}

} // namespace zint
