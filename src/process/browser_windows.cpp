#include "platform/text.h"
#include "process/browser.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <qt_windows.h>

#include <array>
#include <shellapi.h>

namespace zint {

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
    const auto result = reinterpret_cast<quintptr>(
        ::FindExecutableW(reinterpret_cast<const wchar_t*>(native.utf16()), nullptr, program.data()));
    QFile::remove(page);

    constexpr quintptr success = 33; // smaller results are error numbers
    return result < success ? std::string() : fromQt(QString::fromWCharArray(program.data()).trimmed());
}

void startBrowser(const QString& program, const QString& address, const std::function<void()>& onFailure)
{
    if (!QProcess::startDetached(program, {address}))
        onFailure();
}

} // namespace zint
