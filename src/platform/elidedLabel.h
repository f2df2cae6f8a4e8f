#pragma once

#include <QLabel>

namespace zint {

/// A label of one line that ends in an ellipsis where its text does not fit. Its text stays whole, for those
/// who have it read to them.
class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace zint
