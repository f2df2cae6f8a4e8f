#include "platform/windowPrinter.h"

#include "platform/text.h"

#include <QDialogButtonBox>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QWidget>

namespace zint {

WindowPrinter::WindowPrinter(QWidget& window, Prompts& prompts) : window_(window), prompts_(prompts) {}

WindowPrinter::~WindowPrinter() = default;

QPrinter& WindowPrinter::printer()
{
    if (!printer_)
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    return *printer_;
}

void WindowPrinter::setUp()
{
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
        prompts_.message("No printer is set up on this computer. Print can still write a PDF file.");
        return;
    }
    QPrintDialog dialog(&printer(), &window_);
    dialog.setOption(QAbstractPrintDialog::PrintToFile, false); // "Print " offers that
    dialog.setWindowTitle(QObject::tr("Print Setup"));
    if (const auto* buttons = dialog.findChild<QDialogButtonBox*>()) {
        for (QAbstractButton* button : buttons->buttons()) {
            if (buttons->buttonRole(button) == QDialogButtonBox::AcceptRole)
                button->setText(QObject::tr("OK")); // nothing is printed yet
        }
    }
    dialog.exec();
}

void WindowPrinter::print()
{
    QPrintDialog dialog(&printer(), &window_);
    if (dialog.exec() != QDialog::Accepted)
        return;
    if (!printOn(printer())) {
        const QString file = printer().outputFileName();
        prompts_.message(file.isEmpty() ? "Printing failed: the printer does not respond. Choose another one."
                                        : "Printing failed: " + fromQt(file) +
                                              " can't be written. Choose another file or folder.");
    }
}

bool WindowPrinter::printOn(QPrinter& printer) const
{
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const QPixmap image = window_.grab();
    const QRect page = painter.viewport();
    const QSize size = image.size().scaled(page.size(), Qt::KeepAspectRatio);
    painter.drawPixmap(QRect(QPoint(0, 0), size), image);
    return painter.end();
}

} // namespace zint
