#include "widgets/elidedLabel.h"

#include <QPainter>
#include <QStyle>

namespace zint {

void ElidedLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRect place = contentsRect();
    const auto where = static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment()));
    style()->drawItemText(&painter, place, where, palette(), isEnabled(),
                          fontMetrics().elidedText(text(), elideMode_, place.width()), foregroundRole());
}

} // namespace zint
