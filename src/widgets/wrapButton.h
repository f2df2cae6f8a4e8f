#pragma once

#include <QPushButton>

namespace zint {

/// A caption that is broken into lines where it has two or more blanks between words.
QString wrappedCaption(const QString& caption);

/// A button that shows its caption wrapped.
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
