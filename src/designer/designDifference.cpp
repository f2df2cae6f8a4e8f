#include "designer/designDifference.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

using Rows = std::vector<GridRow>;

/// The rows that have no equal among the others.
Rows without(Rows list, const Rows& others)
{
    for (const GridRow& other : others) {
        if (const auto found = std::ranges::find(list, other); found != list.end())
            list.erase(found);
    }
    return list;
}

std::string named(const std::string& what, const Rows& rows)
{
    constexpr std::size_t mostNames = 2;
    std::string text;
    for (std::size_t i = 0; i < std::min(rows.size(), mostNames); ++i)
        text += (i == 0 ? what + ": " : ", ") + rows[i].code + " " + rows[i].description;
    if (rows.size() > mostNames)
        text += " and " + std::to_string(rows.size() - mostNames) + " more";
    return text;
}

std::string rowDifference(const Rows& rows, const Rows& from)
{
    if (const Rows changed = without(rows, from); !changed.empty())
        return named("other rows", changed);
    if (const Rows missing = without(from, rows); !missing.empty())
        return named("without", missing);
    return rows == from ? "" : "another order";
}

std::string commandDifference(const std::string& commands, const std::string& from)
{
    if (commands == from)
        return {};
    return commands.empty() ? "no init commands" : "init commands " + commands;
}

} // namespace

std::string differenceText(const DesignContent& design, const DesignContent& from)
{
    std::string text;
    for (const std::string& part :
         {rowDifference(design.grid.rows, from.grid.rows),
          commandDifference(design.extraCommands, from.extraCommands),
          design.sampleSpeed == from.sampleSpeed ? "" : "sample speed " + speedText(design.sampleSpeed)}) {
        if (!part.empty())
            text += (text.empty() ? "" : "; ") + part;
    }
    return text.empty() ? "the same rows" : text;
}

} // namespace zint
