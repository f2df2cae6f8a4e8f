#include "platform/qtFileDialogs.h"

#include "platform/text.h"

#include <QFileDialog>
#include <QRegularExpression>

namespace zint {
namespace {

/// "Text files (*.txt)|*.txt|..." as the toolkit wants it: the names carry the patterns already.
QStringList nameFilters(const FileKinds& kinds)
{
    const QStringList parts = toQt(kinds.filter).split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i < parts.size(); i += 2) {
        filters += parts[i];
#ifndef Q_OS_WIN
        filters.last().replace(QLatin1String("*.*"),
                               QLatin1String("*")); // all files, those without a dot too
#endif
    }
    return filters;
}

void prepare(QFileDialog& dialog, const FileKinds& kinds, const std::string& folder)
{
    dialog.setNameFilters(nameFilters(kinds));
    dialog.setDefaultSuffix(toQt(kinds.extension));
    if (!folder.empty()) // else it would show the list of drives, where nothing can be saved
        dialog.setDirectory(toQt(folder));
}

/// A name without an ending gets the chosen filter's: "pdf" of "PDF (*.pdf)".
void proposeSuffix(QFileDialog& dialog, const QString& filter)
{
    static const QRegularExpression pattern(QStringLiteral("\\*\\.(\\w+)\\)"));
    if (const auto match = pattern.match(filter); match.hasMatch())
        dialog.setDefaultSuffix(match.captured(1));
}

std::string chosen(QFileDialog& dialog)
{
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return fromQt(QDir::toNativeSeparators(dialog.selectedFiles().constFirst()));
}

} // namespace

std::string QtFileDialogs::chooseToOpen(const FileKinds& kinds, const std::string& folder)
{
    QFileDialog dialog(&window_);
    dialog.setFileMode(QFileDialog::ExistingFile);
    prepare(dialog, kinds, folder);
    return chosen(dialog);
}

std::string QtFileDialogs::chooseAny(const FileKinds& kinds, const std::string& folder)
{
    QFileDialog dialog(&window_);
    dialog.setFileMode(QFileDialog::AnyFile);
    prepare(dialog, kinds, folder);
    return chosen(dialog);
}

std::string QtFileDialogs::chooseToSave(const FileKinds& kinds, const std::string& folder,
                                        const std::string& proposed)
{
    QFileDialog dialog(&window_);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    prepare(dialog, kinds, folder);
    dialog.selectFile(toQt(proposed));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                     [&dialog](const QString& filter) { proposeSuffix(dialog, filter); });
    return chosen(dialog);
}

std::string QtFileDialogs::chooseToAppend(const FileKinds& kinds, const std::string& folder,
                                          const std::string& proposed)
{
    QFileDialog dialog(&window_, QStringLiteral("Append To"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setLabelText(QFileDialog::Accept, QStringLiteral("Append"));
    prepare(dialog, kinds, folder);
    dialog.selectFile(toQt(proposed));
    return chosen(dialog);
}

} // namespace zint
