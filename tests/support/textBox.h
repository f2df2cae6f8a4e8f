#pragma once

#include "shared/outputBox.h"

namespace zint {

/// An output box without a window.
struct TextBox final : OutputBox {
    std::string shown;

    void append(const std::string& text) override { shown += text; }
    void replace(const std::string& text) override { shown = text; }
    std::string text() const override { return shown; }
};

} // namespace zint
