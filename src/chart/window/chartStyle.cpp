#include "chart/window/chartStyle.h"

#include <QPainter>
#include <QPixmap>

namespace zint {

QPen chartPen(std::size_t style, LineWidth width, const QPalette& palette)
{
    constexpr std::array dashes = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};
    constexpr double wide = 1.75;
    const bool isDark = palette.color(QPalette::Base).lightness() < 128;
    const auto& colours = isDark ? coloursOnDark : coloursOnLight;
    QPen pen(QColor::fromRgb(colours.at(style % colours.size())));
    if (width == LineWidth::wide) {
        pen.setWidthF(wide);
        pen.setStyle(dashes.at((style + style / colours.size()) % dashes.size()));
    }
    return pen;
}

QColor chartColour(double part, const QPalette& palette)
{
    const QColor text = palette.color(QPalette::Text);
    const QColor base = palette.color(QPalette::Base);
    const auto mixed = [part](int from, int to) { return static_cast<int>(from + (to - from) * part); };
    return {mixed(base.red(), text.red()), mixed(base.green(), text.green()),
            mixed(base.blue(), text.blue())};
}

QIcon lineSample(QPen pen, double devicePixelRatio)
{
    constexpr QSize size = lineSampleSize;
    QPixmap sample(size * devicePixelRatio);
    sample.setDevicePixelRatio(devicePixelRatio);
    sample.fill(Qt::transparent);
    QPainter painter(&sample);
    pen.setWidthF(2);
    painter.setPen(pen);
    painter.drawLine(1, size.height() / 2, size.width() - 1, size.height() / 2);
    return sample;
}

} // namespace zint
