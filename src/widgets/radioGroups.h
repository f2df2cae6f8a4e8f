#pragma once

#include <QWidget>

namespace zint {

/// Lets the Tab key enter each group of radio buttons of a window at the chosen one. The toolkit does so only
/// once its user has chosen.
void enterRadioGroupsAtTheChosen(const QWidget& window);

} // namespace zint
