#include "platform/dateText.h"

#include "platform/text.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

namespace zint {
namespace {

QDateTime localTime(std::chrono::system_clock::time_point time)
{
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
}

} // namespace

std::string dateText(std::chrono::system_clock::time_point time)
{
    const QDateTime local = localTime(time);
    const QLocale locale;
    QString timeFormat = locale.timeFormat(QLocale::LongFormat); // the short one has no seconds
    static const QRegularExpression zone(QStringLiteral("[\\s,]*[(\\[]?t+[)\\]]?"));
    timeFormat.remove(zone).remove(u'B'); // the time zone's name, and a part of the day that Qt does not know
    return fromQt(locale.toString(local.date(), QLocale::ShortFormat) + u' ' +
                  locale.toString(local.time(), timeFormat.trimmed()));
}

std::string longDateText(std::chrono::system_clock::time_point time)
{
    return fromQt(QLocale::c().toString(localTime(time), QStringLiteral("dddd, MMMM dd, yyyy hh:mm AP")));
}

std::string fileDateText(std::chrono::system_clock::time_point time)
{
    return fromQt(QLocale::c().toString(localTime(time), QStringLiteral("yyyy-MM-dd hh.mm.ss")));
}

} // namespace zint
