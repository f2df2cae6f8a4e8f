#pragma once

#include <QPalette>

namespace zint {

/// Whether what is drawn on a window has to be light to be seen.
inline bool isDark(const QPalette& palette)
{
    constexpr int middle = 128;
    return palette.color(QPalette::Window).lightness() < middle;
}

} // namespace zint
