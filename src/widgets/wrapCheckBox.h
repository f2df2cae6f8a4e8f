#pragma once

#include <QCheckBox>

namespace zint {

/// A check box that shows its caption wrapped, as WrapButton does.
class WrapCheckBox final : public QCheckBox {
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

    QSize sizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
};

} // namespace zint
