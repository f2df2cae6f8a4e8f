#pragma once

#include <QLabel>

namespace zint {

/// A label of one line that shows an ellipsis where its text does not fit. Its text stays whole, for those
/// who have it read to them.
class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    /// Where the ellipsis stands: at the end, unless that tells more than the middle.
    void setElideMode(Qt::TextElideMode mode) { elideMode_ = mode; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::TextElideMode elideMode_ = Qt::ElideRight;
};

} // namespace zint
