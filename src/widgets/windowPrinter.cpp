#include "widgets/windowPrinter.h"

#include "platform/text.h"
#include "widgets/fixedFont.h"

#include <QAbstractTextDocumentLayout>
#include <QDialogButtonBox>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QTextDocument>
#include <QWidget>

#include <utility>

namespace zint {
namespace {

/// Page by page, with page numbers.
bool printPages(QTextDocument& document, QPrinter& printer)
{
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const QRect page = painter.viewport();
    const int footer = 2 * painter.fontMetrics().height();
    const QSize body(page.width(), page.height() - footer);
    document.documentLayout()->setPaintDevice(&printer);
    document.setPageSize(body);
    for (int number = 0; number < document.pageCount(); ++number) {
        if (number > 0)
            printer.newPage();
        painter.save();
        painter.translate(0, -number * body.height());
        document.drawContents(&painter, QRect(QPoint(0, number * body.height()), body));
        painter.restore();
        painter.drawText(page, Qt::AlignRight | Qt::AlignBottom, QString::number(number + 1));
    }
    return painter.end();
}

} // namespace

bool printImage(QWidget& window, QPrinter& printer)
{
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const QPixmap image = window.grab();
    const QRect page = painter.viewport();
    const QSize size = image.size().scaled(page.size(), Qt::KeepAspectRatio);
    painter.drawPixmap(QRect(QPoint(0, 0), size), image);
    return painter.end();
}

bool printDocument(const std::string& html, QPrinter& printer)
{
    QTextDocument document;
    document.setHtml(toQt(html));
    return printPages(document, printer);
}

bool printText(const std::string& text, QPrinter& printer)
{
    constexpr int typeSize = 12;
    QFont font = fixedFont();
    font.setPointSize(typeSize);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere); // a long word would leave the page
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    document.setDefaultFont(font);
    document.setDefaultTextOption(option);
    document.setPlainText(toQt(text));
    return printPages(document, printer);
}

WindowPrinter::WindowPrinter(QWidget& window, Prompts& prompts, Paint paint)
    : window_(window), prompts_(prompts), paint_(std::move(paint))
{
}

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
    if (!paint_(printer())) {
        const QString file = printer().outputFileName();
        prompts_.message(file.isEmpty() ? "Printing failed: the printer does not respond. Choose another one."
                                        : "Printing failed: " + fromQt(file) +
                                              " can't be written. Choose another file or folder.");
    }
}

} // namespace zint
