#include "report/reportText.h"

#include "report/reportHeadline.h"
#include "shared/module1.h"

#include <algorithm>
#include <cstddef>

namespace zint {
namespace {

/// How many characters a UTF-8 text shows.
std::size_t widthOf(const std::string& text)
{
    constexpr unsigned continuation = 0x80;
    constexpr unsigned leadingBits = 0xC0;
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char c) { return (static_cast<unsigned char>(c) & leadingBits) != continuation; }));
}

std::vector<std::size_t> widthsOf(const ReportTable& table)
{
    std::vector<std::size_t> widths;
    widths.reserve(table.columns.size());
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        widths.push_back(widthOf(table.columns[column]));
        for (const auto& row : table.rows)
            widths.back() = std::max(widths.back(), widthOf(row[column].text));
    }
    return widths;
}

/// Texts in columns, without blanks at the end of the line.
std::string line(const std::vector<std::string>& texts, const std::vector<std::size_t>& widths)
{
    std::string text = "  ";
    for (std::size_t column = 0; column < texts.size(); ++column)
        text += texts[column] + std::string(widths[column] - widthOf(texts[column]) + 2, ' ');
    text.erase(text.find_last_not_of(' ') + 1);
    return text + "\n";
}

std::string tableText(const ReportTable& table)
{
    const std::vector<std::size_t> widths = widthsOf(table);
    std::string text = table.title.empty() ? "" : table.title + "\n";
    text += line(table.columns, widths);
    for (const auto& row : table.rows) {
        std::vector<std::string> texts;
        texts.reserve(row.size());
        for (const ReportCell& cell : row)
            texts.push_back(cell.text);
        text += line(texts, widths);
    }
    return text;
}

std::string cellHtml(const ReportCell& cell)
{
    const std::string kind =
        cell.mark == Mark::none ? "" : " class=\"m" + std::to_string(static_cast<int>(cell.mark)) + "\"";
    return "<td" + kind + ">" + htmlText(cell.text) + "</td>";
}

std::string tableHtml(const ReportTable& table)
{
    std::string html = table.title.empty() ? "" : "<h3>" + htmlText(table.title) + "</h3>\n";
    html += "<table>\n<thead><tr>"; // which each printed page repeats
    for (const std::string& column : table.columns)
        html += "<th>" + htmlText(column) + "</th>";
    html += "</tr></thead>\n<tbody>\n";
    for (const auto& row : table.rows) {
        html += "<tr>";
        for (const ReportCell& cell : row)
            html += cellHtml(cell);
        html += "</tr>\n";
    }
    return html + "</tbody>\n</table>\n";
}

/// Of what is marked, in the order of Mark. A report is printed on white paper.
constexpr const char* style = "body { font-family: sans-serif; color: #000; background: #fff; }\n"
                              "table { border-collapse: collapse; margin-bottom: 1em; }\n"
                              "th, td { border: 1px solid #999; padding: 2px 6px; text-align: left; }\n"
                              "tr { page-break-inside: avoid; }\n"
                              ".m1 { background: #d8f0d8; }\n"
                              ".m2 { background: #fdf0c0; }\n"
                              ".m3 { background: #f8d0d0; }\n"
                              ".m4 { color: #555; }\n";

} // namespace

ReportHead headOf(const VehicleFacts& facts, const DateText& dateText, const std::string& failure)
{
    ReportHead head{.title = "Vehicle report",
                    .date = dateText(facts.time),
                    .headline = headlineOf(facts),
                    .failure = failure};
    if (const std::string vin = vinOf(facts); !vin.empty())
        head.title += ", " + vin;
    return head;
}

std::string sectionText(const ReportSection& section)
{
    const std::string word = wordOf(section.mark);
    std::string text = section.title + (word.empty() ? "" : ": " + word) + "\n";
    text += section.note.empty() ? "" : section.note + "\n";
    for (const ReportTable& table : section.tables)
        text += tableText(table);
    return text;
}

std::string reportText(const ReportHead& head, const std::vector<ReportSection>& sections)
{
    std::string text = head.title + "\n" + head.date + "\n";
    for (const std::string& sentence : {head.headline, head.failure})
        text += sentence.empty() ? "" : "\n" + sentence + "\n";
    for (const ReportSection& section : sections)
        text += "\n" + sectionText(section);
    return text;
}

std::string sectionHtml(const ReportSection& section)
{
    const std::string word = wordOf(section.mark);
    std::string html = "<h2>" + htmlText(section.title) + (word.empty() ? "" : " - " + word) + "</h2>\n";
    if (!section.note.empty())
        html += "<p>" + htmlText(section.note) + "</p>\n";
    for (const ReportTable& table : section.tables)
        html += tableHtml(table);
    return html;
}

std::string reportHtml(const ReportHead& head, const std::vector<ReportSection>& sections)
{
    const std::string title = htmlText(head.title);
    std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
                       title + "</title>\n<style>\n" + style + "</style>\n</head>\n<body>\n<h1>" + title +
                       "</h1>\n<p>" + htmlText(head.date) + "</p>\n";
    for (const std::string& sentence : {head.headline, head.failure})
        html += sentence.empty() ? "" : "<p><b>" + htmlText(sentence) + "</b></p>\n";
    for (const ReportSection& section : sections)
        html += sectionHtml(section);
    return html + "</body>\n</html>\n";
}

} // namespace zint
