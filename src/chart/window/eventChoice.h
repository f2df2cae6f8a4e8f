#pragma once

#include "catalogue/design.h"

#include <QStandardItemModel>

#include <cstddef>
#include <vector>

namespace zint {

/// The events of a design that have numbers, and which of them the user wants to see; the chart and the
/// gauges share it. The first column has names with check boxes, the second is the chart's, for values.
class EventChoice final : public QStandardItemModel {
    Q_OBJECT

public:
    static constexpr int nameColumn = 0;
    static constexpr int valueColumn = 1;

    explicit EventChoice(QObject* parent);

    void list(const Design& design); ///< the first four are chosen, unless the same events are listed already
    std::vector<std::size_t> chosen() const; ///< from 0, in rising order
    std::size_t eventOf(int row) const;      ///< from 0

Q_SIGNALS:
    void chosenChanged(); ///< not for texts and icons that the chart puts beside the names

private:
    void append(std::size_t event);

    std::vector<DesignEntry> events_;
};

} // namespace zint
