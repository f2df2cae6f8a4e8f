#include "widgets/radioGroups.h"

#include <QRadioButton>

namespace zint {

void enterRadioGroupsAtTheChosen(const QWidget& window)
{
    for (QRadioButton* button : window.findChildren<QRadioButton*>()) {
        const auto follow = [button](bool isChosen) {
            button->setFocusPolicy(isChosen ? Qt::StrongFocus : Qt::ClickFocus);
        };
        QObject::connect(button, &QRadioButton::toggled, button, follow);
        follow(button->isChecked());
    }
}

} // namespace zint
