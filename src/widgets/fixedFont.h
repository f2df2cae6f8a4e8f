#pragma once

#include <QFontDatabase>
#include <QFontInfo>

namespace zint {

/// Letters of one width, for text in columns, in the size that the system uses.
inline QFont fixedFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (!QFontInfo(font).fixedPitch()) { // some desktops leave their choice open
        font.setFamily(QStringLiteral("monospace"));
        font.setStyleHint(QFont::Monospace);
    }
    return font;
}

} // namespace zint
