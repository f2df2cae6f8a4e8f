#pragma once

#include "shared/fileDialogs.h"

class QWidget;

namespace zint {

/// The platform's file dialogs over a window.
class QtFileDialogs final : public FileDialogs {
public:
    /// @param window outlives the dialogs
    explicit QtFileDialogs(QWidget& window) : window_(window) {}

    std::string chooseToOpen(const FileKinds& kinds, const std::string& folder) override;
    std::string chooseAny(const FileKinds& kinds, const std::string& folder) override;
    std::string chooseToSave(const FileKinds& kinds, const std::string& folder,
                             const std::string& proposed) override;
    std::string chooseToAppend(const FileKinds& kinds, const std::string& folder,
                               const std::string& proposed) override;

private:
    QWidget& window_;
};

} // namespace zint
