#pragma once

#include "platform/throttle.h"
#include "shared/outputBox.h"

#include <QPlainTextEdit>

#include <string>

namespace zint {

/// The box of a window into which a tool writes. Its user can select and copy.
class PlainTextBox final : public QPlainTextEdit, public OutputBox {
    Q_OBJECT

public:
    explicit PlainTextBox(QWidget* parent = nullptr);

    void append(const std::string& text) override;
    void replace(const std::string& text) override;
    std::string text() const override; ///< with what is not shown yet

private:
    void resizeEvent(QResizeEvent* event) override;
    void showPending();

    std::string pending_;    ///< follows what is shown
    bool isNewText_ = false; ///< what is pending replaces what is shown
    Throttle throttle_;
};

} // namespace zint
