#pragma once

#include "shared/fileDialogs.h"

#include <string>
#include <utility>

namespace zint {

/// A user who chooses the file that the test says, or cancels.
struct ScriptedDialogs final : FileDialogs {
    std::string chosen; ///< by the next dialog; empty: it is cancelled
    std::string asked;  ///< of the last dialog: open or save, folder, proposed name, filter

    std::string chooseToOpen(const FileKinds& kinds, const std::string& folder) override
    {
        asked = "open " + folder + "||" + kinds.filter;
        return std::exchange(chosen, {});
    }

    std::string chooseAny(const FileKinds& kinds, const std::string& folder) override
    {
        asked = "any " + folder + "||" + kinds.filter;
        return std::exchange(chosen, {});
    }

    std::string chooseToSave(const FileKinds& kinds, const std::string& folder,
                             const std::string& proposed) override
    {
        asked = "save " + folder + "|" + proposed + "|" + kinds.filter;
        return std::exchange(chosen, {});
    }

    std::string chooseToAppend(const FileKinds& kinds, const std::string& folder,
                               const std::string& proposed) override
    {
        asked = "append " + folder + "|" + proposed + "|" + kinds.filter;
        return std::exchange(chosen, {});
    }
};

} // namespace zint
