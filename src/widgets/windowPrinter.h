#pragma once

#include "shared/prompts.h"

#include <functional>
#include <memory>
#include <string>

class QPrinter;
class QWidget;

namespace zint {

// What a window puts on paper. Each returns false when the printer can't be used; nothing is printed then.

/// The image of the window, as large as the page allows.
bool printImage(QWidget& window, QPrinter& printer);

/// A text in HTML, page by page, with page numbers.
bool printDocument(const std::string& html, QPrinter& printer);

/// A plain text in letters of one width, page by page, with page numbers.
bool printText(const std::string& text, QPrinter& printer);

/// A window's way to the printer, or to a PDF file.
class WindowPrinter {
public:
    using Paint = std::function<bool(QPrinter&)>;

    /// Window and prompts outlive the printer.
    WindowPrinter(QWidget& window, Prompts& prompts, Paint paint);
    ~WindowPrinter();

    void setUp(); ///< chooses the printer and its paper; cancelling changes nothing
    void print(); ///< asks where to print, then prints; cancelling prints nothing

private:
    QPrinter& printer();

    QWidget& window_;
    Prompts& prompts_;
    Paint paint_;
    std::unique_ptr<QPrinter> printer_; ///< made when it is needed: looking for printers takes time
};

} // namespace zint
