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

/// A name without an ending gets the chosen filter's: "pdf" of "PDF (*.pdf)"; with all files the usual one.
void proposeSuffix(QFileDialog& dialog, const QString& filter, const QString& usual)
{
    static const QRegularExpression pattern(QStringLiteral("\\*\\.(\\w+)\\)"));
    const auto match = pattern.match(filter);
    dialog.setDefaultSuffix(match.hasMatch() ? match.captured(1) : usual);
}

/// Begins with a name, and with the first filter that its ending fits.
void propose(QFileDialog& dialog, const QString& name, const QString& usual)
{
    dialog.selectFile(name);
    const QString pattern = QStringLiteral("(*.%1)").arg(QFileInfo(name).suffix());
    const QStringList fitting = dialog.nameFilters().filter(pattern, Qt::CaseInsensitive);
    if (fitting.isEmpty())
        return;
    dialog.selectNameFilter(fitting.constFirst());
    proposeSuffix(dialog, fitting.constFirst(), usual);
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
    const QString usual = toQt(kinds.extension);
    propose(dialog, toQt(proposed), usual);
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                     [&](const QString& filter) { proposeSuffix(dialog, filter, usual); });
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
