#pragma once

#include "shared/module1.h"

#include <QString>

#include <string>
#include <string_view>

/// Between the program's UTF-8 texts and the toolkit's.
namespace zint {

inline QString toQt(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The same with line ends as the toolkit shows them; the program's are CR LF, those of replies CR alone.
inline QString toQtLines(std::string_view text)
{
    return toQt(text).replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
}

inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// A text as a tool tip that shows it as it stands.
inline QString tipText(std::string_view text)
{
    return text.empty() ? QString() : QStringLiteral("<p>") + toQt(htmlText(text)) + QStringLiteral("</p>");
}

} // namespace zint
