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

class CsvLines {
public:
    CsvLines(std::ostream& stream, const Design& design, Decimals decimals)
        : lines_(stream), design_(design), point_(decimals == Decimals::comma ? ',' : '.'),
          separator_(decimals == Decimals::comma ? ';' : ',')
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
                writeValue(design_.events[event], row.cells[event].value);
        }
        lines_.endLine();
    }

    void flush() { lines_.flush(); }

    void operator()(std::int32_t number) { lines_ << number; }
    void operator()(converted::WithoutUnit value) { lines_ << value.number; }
    void operator()(converted::Hexadecimal value) { appendValue(lines_.text(), value); }
    void operator()(converted::Placeholder words) { lines_ << csvField(words); }
    void operator()(const converted::Words& words) { lines_ << csvField(words.text); }
    void operator()(double number) { writeFraction(number); }
    void operator()(converted::Rounded number) { writeFraction(number); }

private:
    void writeFraction(const converted::Value& number)
    {
        std::string& text = lines_.text();
        const std::size_t begin = text.size();
        appendValue(text, number);
        if (const std::size_t place = text.find('.', begin); place != std::string::npos)
            text[place] = point_;
    }

    /// Samples of a log whose times were spread over their second may come out of order.
    void writeTime(SampleTime time)
    {
        time_ = std::max(time_, time.seconds * second + time.milliseconds);
        lines_ << time_ / second << point_;
        lines_ << std::string_view(std::to_string(second + time_ % second)).substr(1);
    }

    void writeValue(const DesignEntry& event, double value)
    {
        try {
            std::visit(*this, convertedValue(event, value));
        } catch (const RunTimeError& overflow) {
            lines_ << overflow.what(); // one such value is no reason to withhold the others
        }
    }

    LineWriter lines_;
    const Design& design_;
    char point_;
    char separator_;
    std::int64_t time_ = 0; ///< of the last row, in milliseconds
};

} // namespace

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
