#pragma once

#include <QImage>
#include <QPixmap>
#include <QString>
#include <QWidget>

#include <span>

namespace zint {

/// A line's name, and what the line looks like.
struct ChartName {
    QPixmap sample; ///< as lineSample() makes it
    QString text;
};

/// What is seen of a chart, with its lines' names below it, in as many rows as they need.
QImage chartPicture(QWidget& chart, std::span<const ChartName> names);

} // namespace zint
