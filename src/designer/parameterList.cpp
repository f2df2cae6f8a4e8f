#include "designer/parameterList.h"

#include "catalogue/conversion.h"
#include "parameters/carSupport.h"
#include "parameters/standardParameters.h"
#include "shared/module1.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

constexpr std::string_view ownGroup = "Own";

std::size_t at(ParameterColumn column) { return static_cast<std::size_t>(column); }

std::string supportText(const CarSupport& car, const std::string& code)
{
    const auto pid = requestedParameter(code);
    const auto supported = pid ? isSupported(car, *pid) : std::nullopt;
    if (!supported)
        return {};
    return *supported ? "yes" : "no";
}

std::string hintOf(const CarSupport& car)
{
    return car.source.empty()
               ? "What this car supports is not known yet: the support check (Poll Setup) and the vehicle "
                 "report tell."
               : "What this car supports is known from the " + car.source + ".";
}

/// Whether an event of a design asks for what a conversion shows, whatever its units are. The conversions of
/// ConversionTable show a parameter's first field.
bool showsSame(const DesignEntry& event, std::int32_t conversion)
{
    const auto wanted = standardConversion(conversion);
    if (!wanted)
        return event.conversion == conversion;
    if (const auto present = standardConversion(event.conversion))
        return present->pid == wanted->pid && present->field == wanted->field;
    return findConversion(event.conversion) != nullptr && wanted->field == 0 &&
           requestedParameter(event.code) == wanted->pid;
}

std::string inDesignText(const GridRows& rows, std::int32_t conversion)
{
    std::string text;
    for (const DesignEntry& row : rows) {
        if (!showsSame(row, conversion))
            continue;
        if (row.isPolled())
            return "yes";
        text = "not polled";
    }
    return text;
}

/// What is supported comes first, what is not comes last.
std::string sortKey(const ParameterListPanel::Row& row, ParameterColumn column)
{
    const std::string& cell = row.cells.at(at(column));
    if (column == ParameterColumn::supported)
        return cell == "yes" ? "1" : cell.empty() ? "2" : "3";
    return (cell.empty() ? "1" : "0") + upperCase(cell);
}

std::string counted(std::size_t number, const std::string& what)
{
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

} // namespace

struct ParameterList::Kind {
    std::string_view unit;
    std::string_view group;
};

ParameterList::ParameterList(Designer& designer, ProgramValues& values) : designer_(designer), values_(values)
{
    panel_.groups = {"All groups"};
    for (const std::string_view group : parameterGroups())
        panel_.groups.emplace_back(group);
    panel_.groups.emplace_back(ownGroup);
    panel_.units = chosenUnits(values);
    refresh();
}

void ParameterList::search(const std::string& words)
{
    panel_.search = words;
    refresh();
}

void ParameterList::chooseGroup(std::size_t group)
{
    panel_.group = std::min(group, panel_.groups.size() - 1);
    refresh();
}

void ParameterList::chooseUnits(UnitSystem units)
{
    panel_.units = units;
    keepUnits(values_, units);
    refresh();
}

void ParameterList::showOnlySupported(bool only)
{
    panel_.isOnlySupported = only;
    refresh();
}

void ParameterList::sortBy(ParameterColumn column)
{
    panel_.isDescending = column == panel_.sortedBy && !panel_.isDescending;
    panel_.sortedBy = column;
    refresh();
}

void ParameterList::add(const std::vector<std::size_t>& rows)
{
    std::vector<DesignEntry> events;
    events.reserve(rows.size());
    for (const std::size_t row : rows)
        events.push_back(panel_.rows.at(row).event);
    if (events.empty())
        return;
    designer_.addEvents(events);
    refresh();
    panel_.statusBox = counted(events.size(), "parameter") + " added; the design has " +
                       counted(designer_.draft().polledCount(), "polled event") + " of " +
                       std::to_string(Design::maxEvents);
    if (onChanged)
        onChanged();
}

void ParameterList::refresh()
{
    panel_.canShowSupported = values_.carSupport.told.any();
    panel_.isOnlySupported = panel_.isOnlySupported && panel_.canShowSupported;
    panel_.supportHint = hintOf(values_.carSupport);
    panel_.rows.clear();
    for (const StandardParameter& parameter : standardParameters())
        addRow(eventFor(parameter, panel_.units), {parameter.unit(panel_.units), parameter.group});
    for (const OwnParameterPointer& own : designer_.ownParameters().all())
        addRow(eventFor(own), {own->unit, ownGroup});
    sort();
    panel_.statusBox = panel_.rows.empty() ? "Nothing is found" : counted(panel_.rows.size(), "parameter");
    if (onChanged)
        onChanged();
}

/// Adds a row if it is looked for.
void ParameterList::addRow(DesignEntry event, const Kind& kind)
{
    const std::string support = supportText(values_.carSupport, event.code);
    const bool isShown = (panel_.group == 0 || panel_.groups[panel_.group] == kind.group) &&
                         (!panel_.isOnlySupported || support == "yes") &&
                         isFound({event.code, event.description, kind.unit, kind.group}, panel_.search);
    if (!isShown)
        return;
    const std::string inDesign = inDesignText(designer_.panel().obdGrid, event.conversion);
    ParameterListPanel::Row& row = panel_.rows.emplace_back();
    row.cells = {event.code, event.description, std::string(kind.unit), std::string(kind.group),
                 support,    inDesign};
    row.event = std::move(event);
}

void ParameterList::sort()
{
    using Row = ParameterListPanel::Row;
    std::ranges::stable_sort(panel_.rows, [this](const Row& a, const Row& b) {
        const Row& first = panel_.isDescending ? b : a;
        const Row& second = panel_.isDescending ? a : b;
        return sortKey(first, panel_.sortedBy) < sortKey(second, panel_.sortedBy);
    });
}

} // namespace zint
