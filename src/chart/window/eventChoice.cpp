#include "chart/window/eventChoice.h"

#include "catalogue/eventValue.h"
#include "platform/text.h"

#include <utility>

namespace zint {
namespace {

constexpr int eventRole = Qt::UserRole; ///< of a name: the event, from 0
constexpr int chosenAtFirst = 4;

} // namespace

EventChoice::EventChoice(QObject* parent) : QStandardItemModel(0, 2, parent)
{
    setHorizontalHeaderLabels({tr("Event"), tr("Value")});
    connect(this, &QStandardItemModel::dataChanged, this,
            [this](const QModelIndex&, const QModelIndex&, const QList<int>& roles) {
                if (roles.contains(Qt::CheckStateRole))
                    Q_EMIT chosenChanged();
            });
}

void EventChoice::list(const Design& design)
{
    if (design.events != std::exchange(events_, design.events)) {
        removeRows(0, rowCount());
        for (std::size_t event = 0; event < events_.size(); ++event) {
            if (isDrawn(events_[event]))
                append(event);
        }
    }
    Q_EMIT chosenChanged();
}

void EventChoice::append(std::size_t event)
{
    auto* name = new QStandardItem(toQt(events_[event].name()));
    name->setData(static_cast<int>(event), eventRole);
    name->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    name->setCheckState(rowCount() < chosenAtFirst ? Qt::Checked : Qt::Unchecked);
    auto* value = new QStandardItem;
    value->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    value->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    appendRow({name, value});
}

std::vector<std::size_t> EventChoice::chosen() const
{
    std::vector<std::size_t> events;
    for (int row = 0; row < rowCount(); ++row) {
        if (item(row, nameColumn)->checkState() == Qt::Checked)
            events.push_back(eventOf(row));
    }
    return events;
}

std::size_t EventChoice::eventOf(int row) const
{
    return static_cast<std::size_t>(item(row, nameColumn)->data(eventRole).toInt());
}

} // namespace zint
