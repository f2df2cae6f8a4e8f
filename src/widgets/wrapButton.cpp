#include "widgets/wrapButton.h"

#include <QRegularExpression>
#include <QStyleOptionButton>

#include <algorithm>

namespace zint {

QString wrappedCaption(const QString& caption)
{
    static const QRegularExpression gap(QStringLiteral(" {2,}"));
    return caption.trimmed().replace(gap, QStringLiteral("\n"));
}

void WrapButton::initStyleOption(QStyleOptionButton* option) const
{
    QPushButton::initStyleOption(option);
    option->text = wrappedCaption(text());
}

QSize WrapButton::sizeHint() const
{
    ensurePolished();
    QStyleOptionButton option;
    initStyleOption(&option);
    QSize contents = option.fontMetrics.size(Qt::TextShowMnemonic, option.text);
    if (!option.icon.isNull()) {
        constexpr int gapBesideIcon = 4; // as the button of the toolkit has it
        contents.rwidth() += option.iconSize.width() + gapBesideIcon;
        contents.setHeight(std::max(contents.height(), option.iconSize.height()));
    }
    return style()->sizeFromContents(QStyle::CT_PushButton, &option, contents, this);
}

} // namespace zint
