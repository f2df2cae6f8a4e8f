#include "runner/window/chartPicture.h"

#include "runner/window/chartStyle.h"

#include <QFontMetrics>
#include <QPainter>

#include <cstddef>
#include <vector>

namespace zint {

QImage chartPicture(QWidget& chart, std::span<const ChartName> names)
{
    constexpr int gap = 8;
    const QFontMetrics metrics(chart.font());
    const int rowHeight = metrics.lineSpacing() + gap / 2;
    const QSize size = chart.size();
    std::vector<QPoint> places; // of the names, in rows
    QPoint place(gap, size.height());
    for (const ChartName& name : names) {
        const int width = lineSampleSize.width() + metrics.horizontalAdvance(name.text) + 2 * gap;
        if (place.x() + width > size.width() && place.x() > gap)
            place = QPoint(gap, place.y() + rowHeight);
        places.push_back(place);
        place.rx() += width + gap;
    }
    const int height = places.empty() ? size.height() : place.y() + rowHeight + gap;

    const double ratio = chart.devicePixelRatioF();
    QImage image(QSize(size.width(), height) * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(chart.palette().color(QPalette::Base));
    QPainter painter(&image);
    painter.drawPixmap(0, 0, chart.grab());
    painter.setFont(chart.font());
    painter.setPen(chart.palette().color(QPalette::Text));
    for (std::size_t i = 0; i < names.size(); ++i) {
        const QPoint middle = places[i] + QPoint(0, rowHeight / 2);
        painter.drawPixmap(middle - QPoint(0, lineSampleSize.height() / 2), names[i].sample);
        painter.drawText(places[i] + QPoint(lineSampleSize.width() + gap,
                                            (rowHeight - metrics.height()) / 2 + metrics.ascent()),
                         names[i].text);
    }
    return image;
}

} // namespace zint
