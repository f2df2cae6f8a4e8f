#include "runner/window/chartStyle.h"

#include <QPainter>

#include <array>

namespace zint {
namespace {

/// Colours that differ from each other and stand out from their background. There are as many of both kinds.
constexpr std::array onLight = {0x1b5fb8, 0xc8401a, 0x1c7d47, 0xa3308f,
                                0x8a6400, 0x0b7c90, 0x6b46c8, 0x5a5f66};
constexpr std::array onDark = {0x6cb0ff, 0xff8d5e, 0x63d692, 0xf18fdc,
                               0xe8bf45, 0x50d3e2, 0xb8a2ff, 0xc6cad0};
static_assert(onLight.size() == onDark.size());

/// With the colours used up, lines differ by their dashes.
constexpr std::array dashes = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};

} // namespace

QPen chartPen(std::size_t style, const QPalette& palette)
{
    const bool isDark = palette.color(QPalette::Base).lightness() < 128;
    const std::size_t colour = style % onLight.size();
    QPen pen(QColor::fromRgb(static_cast<QRgb>(isDark ? onDark.at(colour) : onLight.at(colour))));
    pen.setStyle(dashes.at(style / onLight.size() % dashes.size()));
    return pen;
}

QColor chartColour(double part, const QPalette& palette)
{
    const QColor text = palette.color(QPalette::Text);
    const QColor base = palette.color(QPalette::Base);
    return QColor::fromRgbF(static_cast<float>(base.redF() + (text.redF() - base.redF()) * part),
                            static_cast<float>(base.greenF() + (text.greenF() - base.greenF()) * part),
                            static_cast<float>(base.blueF() + (text.blueF() - base.blueF()) * part));
}

QPixmap lineSample(QPen pen, double devicePixelRatio)
{
    QPixmap sample(lineSampleSize * devicePixelRatio);
    sample.setDevicePixelRatio(devicePixelRatio);
    sample.fill(Qt::transparent);
    QPainter painter(&sample);
    pen.setWidthF(pen.style() == Qt::SolidLine ? 3 : 2);
    painter.setPen(pen);
    const int middle = lineSampleSize.height() / 2;
    painter.drawLine(1, middle, lineSampleSize.width() - 1, middle);
    return sample;
}

} // namespace zint
