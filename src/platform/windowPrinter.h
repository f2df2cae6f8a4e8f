#pragma once

#include "shared/prompts.h"

#include <memory>

class QPrinter;
class QWidget;

namespace zint {

/// Prints the image of a window, on paper or to a PDF file.
class WindowPrinter {
public:
    /// Window and prompts outlive the printer.
    WindowPrinter(QWidget& window, Prompts& prompts);
    ~WindowPrinter();

    void setUp(); ///< chooses the printer and its paper; cancelling changes nothing
    void print(); ///< asks where to print, then prints; cancelling prints nothing

    /// Prints on a printer that has been set up. @return false when it can't be used; nothing is printed then
    bool printOn(QPrinter& printer) const;

private:
    QPrinter& printer();

    QWidget& window_;
    Prompts& prompts_;
    std::unique_ptr<QPrinter> printer_; ///< made when it is needed: looking for printers takes time
};

} // namespace zint
