#pragma once

#include "shared/outputBox.h"

#include <QPlainTextEdit>

namespace zint {

/// The box of a window into which a tool writes. Its user can select and copy.
class PlainTextBox final : public QPlainTextEdit, public OutputBox {
    Q_OBJECT

public:
    explicit PlainTextBox(QWidget* parent = nullptr);

    void append(const std::string& text) override;
    void replace(const std::string& text) override;
    std::string text() const override;

private:
    void showEnd();
};

} // namespace zint
