#include "widgets/wrapCheckBox.h"

#include "widgets/wrapButton.h"

#include <QStyleOptionButton>

namespace zint {

void WrapCheckBox::initStyleOption(QStyleOptionButton* option) const
{
    QCheckBox::initStyleOption(option);
    option->text = wrappedCaption(text());
}

QSize WrapCheckBox::sizeHint() const
{
    ensurePolished();
    QStyleOptionButton option;
    initStyleOption(&option);
    const QSize contents = option.fontMetrics.size(Qt::TextShowMnemonic, option.text);
    return style()->sizeFromContents(QStyle::CT_CheckBox, &option, contents, this);
}

} // namespace zint
