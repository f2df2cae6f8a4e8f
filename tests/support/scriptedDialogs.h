#pragma once

#include "shared/fileDialogs.h"

#include <string>
#include <utility>

namespace zint {

/// A user who chooses the file that the test says, or cancels.
struct ScriptedDialogs final : FileDialogs {
    std::string chosen; ///< by the next dialog; empty: it is cancelled
    std::string asked;  ///< of the last dialog: open, save or append, folder, proposed name, filter

    std::string chooseToOpen(const FileKinds& kinds, const std::string& folder) override
    {
        return choose("open " + folder + "||" + kinds.filter);
    }

    std::string chooseToSave(const FileKinds& kinds, const std::string& folder,
                             const std::string& proposed) override
    {
        return choose("save " + folder + "|" + proposed + "|" + kinds.filter);
    }

    std::string chooseToAppend(const FileKinds& kinds, const std::string& folder,
                               const std::string& proposed) override
    {
        return choose("append " + folder + "|" + proposed + "|" + kinds.filter);
    }

private:
    std::string choose(const std::string& question)
    {
        asked = question;
        return std::exchange(chosen, {});
    }
};

} // namespace zint
