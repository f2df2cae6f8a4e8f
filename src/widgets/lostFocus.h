#pragma once

#include <QLineEdit>

#include <functional>

namespace zint {

/// Calls the handler each time the focus goes from a text box to another control, whether or not the text has
/// changed. Leaving the whole window, or opening a menu, does not count.
void onLostFocus(QLineEdit& box, std::function<void()> handler);

} // namespace zint
