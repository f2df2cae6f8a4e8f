#include "runner/window/pollGridModel.h"

#include "platform/text.h"
#include "widgets/display.h"

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <array>

namespace zint {
namespace {

struct Column {
    const char* heading; ///< with blanks, which set the column's width
    std::string PollPanel::Row::*text;
    bool PollPanel::Row::*isNew; ///< null for a column that does not tell
};

constexpr std::array<Column, 5> columns = {{
    {"Description                           ", &PollPanel::Row::description, nullptr},
    {"               Value", &PollPanel::Row::value, nullptr},
    {"  Samples", &PollPanel::Row::samples, nullptr},
    {"                 Min", &PollPanel::Row::minimum, &PollPanel::Row::minimumIsNew},
    {"                 Max", &PollPanel::Row::maximum, &PollPanel::Row::maximumIsNew},
}};

const Column& columnAt(int section) { return columns.at(static_cast<std::size_t>(section)); }

QVariant background(PollPanel::Shade shade)
{
    switch (shade) {
    case PollPanel::Shade::error:
        return QColor(Qt::yellow);
    case PollPanel::Shade::constant:
        return QGuiApplication::palette().brush(QPalette::Button);
    case PollPanel::Shade::usual:
        break;
    }
    return {};
}

/// The colour of selections, made light or dark enough to be read on the grid's own colour.
QColor highlight()
{
    constexpr int lightest = 110; // on a light grid
    constexpr int darkest = 175;  // on a dark one
    const QPalette palette = QGuiApplication::palette();
    const QColor colour = palette.color(QPalette::Highlight).toHsl();
    const bool isDark = palette.color(QPalette::Base).lightness() < 128;
    const int lightness =
        isDark ? std::max(colour.lightness(), darkest) : std::min(colour.lightness(), lightest);
    return QColor::fromHsl(colour.hslHue(), colour.hslSaturation(), lightness);
}

QVariant textColour(PollPanel::Shade shade, bool isNew)
{
    const bool onYellow = shade == PollPanel::Shade::error;
    if (isNew)
        return onYellow ? QColor(Qt::darkBlue) : highlight();
    return onYellow ? QColor(Qt::black) : QVariant();
}

/// With words in front that their column cuts off.
QString toolTip(const PollPanel::Row& row, const std::string& text)
{
    constexpr std::size_t shownWhole = 14; // characters
    if (text.size() <= shownWhole)
        return toQt(row.toolTip);
    return toQt(text + (row.toolTip.empty() ? "" : "\n") + row.toolTip);
}

} // namespace

void PollGridModel::refresh(const std::vector<PollPanel::Row>& rows)
{
    if (rows.size() != rows_.size()) {
        beginResetModel();
        rows_ = rows;
        endResetModel();
        return;
    }
    rows_ = rows;
    if (!rows.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int PollGridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int PollGridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns.size());
}

QVariant PollGridModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const PollPanel::Row& row = rows_.at(static_cast<std::size_t>(index.row()));
    const Column& column = columnAt(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return toQt(row.*column.text);
    case Qt::TextAlignmentRole:
        return alignment(index.column() != 0);
    case Qt::BackgroundRole:
        return index.column() == 0 ? QVariant() : background(row.shade);
    case Qt::ForegroundRole:
        return index.column() == 0 ? QVariant()
                                   : textColour(row.shade, column.isNew != nullptr && row.*column.isNew);
    case Qt::ToolTipRole:
        return toolTip(row, index.column() == 0 ? std::string() : row.*column.text);
    default:
        return {};
    }
}

QVariant PollGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole ? section + 1 : QVariant();
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromLatin1(columnAt(section).heading);
    case Qt::TextAlignmentRole:
        return alignment(section != 0);
    default:
        return {};
    }
}

} // namespace zint
