#pragma once

#include <string>

namespace zint {

/// A box of plain text into which a tool writes. Texts are UTF-8, their lines end with CR LF.
class OutputBox {
public:
    virtual ~OutputBox() = default;

    virtual void append(const std::string& text) = 0; ///< at the end, which then is in view
    virtual void replace(const std::string& text) = 0;
    virtual std::string text() const = 0;
};

} // namespace zint
