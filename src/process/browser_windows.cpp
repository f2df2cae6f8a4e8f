#include "platform/text.h"
#include "process/browser.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <qt_windows.h>

#include <array>
#include <shellapi.h>

namespace zint {
namespace {

constexpr quintptr success = 33; // smaller results of the system's shell are error numbers

const wchar_t* wideText(const QString& text) { return reinterpret_cast<const wchar_t*>(text.utf16()); }

/// These stand for a program of the system's store, which can't be started as others are.
bool isStandIn(const QString& program)
{
    return program.endsWith(QLatin1String("\\OpenWith.exe"), Qt::CaseInsensitive) ||
           program.endsWith(QLatin1String("\\LaunchWinApp.exe"), Qt::CaseInsensitive);
}

} // namespace

std::string findBrowser()
{
    // The system tells the program for an existing file only.
    const QString page = QDir(QDir::tempPath()).filePath(QStringLiteral("tmphtml.HTM"));
    QFile file(page);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write("<html></html>\r\n");
    file.close();

    std::array<wchar_t, MAX_PATH> program{};
    const QString native = QDir::toNativeSeparators(page);
    const auto result =
        reinterpret_cast<quintptr>(::FindExecutableW(wideText(native), nullptr, program.data()));
    QFile::remove(page);

    return result < success ? std::string() : fromQt(QString::fromWCharArray(program.data()).trimmed());
}

void startBrowser(const QString& program, const QString& address, const std::function<void()>& onFailure)
{
    if (!isStandIn(program) && QProcess::startDetached(program, {address}))
        return;
    const auto result = reinterpret_cast<quintptr>(
        ::ShellExecuteW(nullptr, L"open", wideText(address), nullptr, nullptr, SW_SHOWNORMAL));
    if (result < success)
        onFailure();
}

} // namespace zint
