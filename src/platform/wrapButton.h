#pragma once

#include <QPushButton>

namespace zint {

/// A button that begins a new line where its caption has two or more blanks between words.
class WrapButton final : public QPushButton {
    Q_OBJECT

public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
};

} // namespace zint
