#pragma once

#include "shared/settingsStore.h"

#include <QWidget>

namespace zint {

/// Gives a window the size that it had when it was last closed.
void restoreSize(QWidget& window, const SettingsStore& settings);

/// Keeps the window's size under its object name.
void rememberSize(const QWidget& window, SettingsStore& settings);

} // namespace zint
