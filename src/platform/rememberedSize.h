#pragma once

#include "shared/settingsStore.h"

#include <QWidget>

namespace zint {

/// Makes a window no larger than its screen has room for. One whose controls need more gets scroll bars.
void fitToScreen(QWidget& window);

/// Gives a window the size that it had when it was last closed, as far as its screen has room for it.
void restoreSize(QWidget& window, const SettingsStore& settings);

/// Keeps the window's size under its object name.
void rememberSize(const QWidget& window, SettingsStore& settings);

} // namespace zint
