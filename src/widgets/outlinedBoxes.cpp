#include "widgets/outlinedBoxes.h"

#include "widgets/dark.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>

namespace zint {
namespace {

/// The Fusion style makes outlines darker than the window. Under dark colours they can't be seen, and an
/// unchecked box is a dark spot.
class OutlinedBoxes final : public QProxyStyle {
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override
    {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        if (!isDark(option->palette) || option->state.testFlags(State_HasFocus | State_KeyboardFocusChange))
            return; // the focus has an outline of its own
        if (element == PE_IndicatorCheckBox)
            draw(*option, *painter, &QPainter::drawRect);
        else if (element == PE_IndicatorRadioButton)
            draw(*option, *painter, &QPainter::drawEllipse);
    }

private:
    static void draw(const QStyleOption& option, QPainter& painter, void (QPainter::*outline)(const QRectF&))
    {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(option.palette.color(QPalette::WindowText));
        (painter.*outline)(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5));
        painter.restore();
    }
};

} // namespace

void useOutlinedBoxes()
{
    const QStyle* style = QApplication::style();
    while (const auto* proxy = qobject_cast<const QProxyStyle*>(style)) // a desktop's, for instance
        style = proxy->baseStyle();
    if (style->name() == QLatin1String("fusion"))
        QApplication::setStyle(new OutlinedBoxes); // the application owns it
}

} // namespace zint
