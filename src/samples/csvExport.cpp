#include "samples/csvExport.h"

#include "catalogue/eventValue.h"
#include "samples/lineWriter.h"
#include "samples/tableRows.h"
#include "shared/csvText.h"
#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <variant>

namespace zint {
namespace {

constexpr std::int64_t second = 1000; // milliseconds

std::string headOf(const DesignEntry& event)
{
    const std::string_view unit = unitNameOf(event);
    return event.name() + (unit.empty() ? "" : " (" + std::string(unit) + ")");
}

/// Numbers a head that is taken, for programs find a column by its head.
std::string numbered(const std::string& head, std::set<std::string>& taken)
{
    std::string name = head;
    for (int number = 2; !taken.insert(name).second; ++number)
        name = head + " " + std::to_string(number);
    return name;
}

char pointOf(Decimals decimals) { return decimals == Decimals::comma ? ',' : '.'; }

/// Writes a converted value as a field.
struct FieldWriter {
    std::string& text;
    char point;

    void operator()(std::int32_t number) const { appendNumber(text, number); }
    void operator()(converted::WithoutUnit value) const { appendNumber(text, value.number); }
    void operator()(converted::Hexadecimal value) const { appendValue(text, value); }
    void operator()(converted::Placeholder words) const { text += csvField(words); }
    void operator()(const converted::Words& words) const { text += csvField(words.text); }
    void operator()(double number) const { appendFraction(number); }
    void operator()(converted::Rounded number) const { appendFraction(number); }

private:
    void appendFraction(const converted::Value& number) const
    {
        const std::size_t begin = text.size();
        appendValue(text, number);
        if (const std::size_t place = text.find('.', begin); place != std::string::npos)
            text[place] = point;
    }
};

class CsvLines {
public:
    CsvLines(std::ostream& stream, const Design& design, Decimals decimals)
        : lines_(stream), design_(design), decimals_(decimals), separator_(csvSeparator(decimals))
    {
    }

    void writeHead()
    {
        std::string heads = "Time (s)";
        std::set<std::string> taken{heads};
        for (const DesignEntry& event : design_.events)
            (heads += separator_) += csvField(numbered(headOf(event), taken));
        if (!std::ranges::all_of(heads, [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
            lines_ << byteOrderMark; // without it spreadsheets read other letters
        lines_ << heads;
        lines_.endLine();
    }

    void write(const TableRow& row)
    {
        if (std::ranges::none_of(row.cells, &TableRow::Cell::isFilled))
            return;
        writeTime(row.time);
        for (std::size_t event = 0; event < row.cells.size(); ++event) {
            lines_ << separator_;
            if (row.cells[event].isFilled)
                appendCsvValue(lines_.text(), design_.events[event], row.cells[event].value, decimals_);
        }
        lines_.endLine();
    }

    void flush() { lines_.flush(); }

private:
    /// Samples of a log whose times were spread over their second may come out of order.
    void writeTime(SampleTime time)
    {
        time_ = std::max(time_, time.seconds * second + time.milliseconds);
        lines_ << csvSeconds(
            {static_cast<std::int32_t>(time_ / second), static_cast<std::uint16_t>(time_ % second)},
            decimals_);
    }

    LineWriter lines_;
    const Design& design_;
    Decimals decimals_;
    char separator_;
    std::int64_t time_ = 0; ///< of the last row, in milliseconds
};

} // namespace

char csvSeparator(Decimals decimals) { return decimals == Decimals::comma ? ';' : ','; }

void appendCsvValue(std::string& text, const DesignEntry& event, double value, Decimals decimals)
{
    try {
        std::visit(FieldWriter{text, pointOf(decimals)}, convertedValue(event, value));
    } catch (const RunTimeError& overflow) {
        text += overflow.what(); // one such value is no reason to withhold the others
    }
}

std::string csvSeconds(SampleTime time, Decimals decimals)
{
    return std::to_string(time.seconds) + pointOf(decimals) +
           std::to_string(second + time.milliseconds).substr(1);
}

bool isCsvPath(std::string_view path) { return upperCase(path).ends_with(".CSV"); }

void writeCsv(std::ostream& stream, const Design& design, const SampleStore& samples, Decimals decimals,
              const std::function<void(const std::string&)>& complain, Progress& progress)
{
    CsvLines lines(stream, design, decimals);
    lines.writeHead();
    const auto write = [&lines](const TableRow& row) { lines.write(row); };
    gatherRows(samples, design.events.size(), write, complain, progress);
    lines.flush();
}

} // namespace zint
