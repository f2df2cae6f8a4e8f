#pragma once

#include "designer/keptDesigns.h"
#include "shared/fileDialogs.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <optional>
#include <string>

namespace zint {

/// The files of the design that is being edited: the one that it comes from, the one that it is saved to, and
/// the one that keeps its draft while it is not saved.
class DesignFileKeeper {
public:
    /// All references outlive the keeper.
    DesignFileKeeper(Prompts& prompts, FileDialogs& dialogs, ProgramValues& values, KeptDesigns& kept)
        : prompts_(prompts), dialogs_(dialogs), values_(values), kept_(kept)
    {
    }

    /// The design's file, as it is shown; saving may ask for another one. Empty: it has none.
    const std::string& path() const { return path_; }

    /// Asks for a file to open. @return empty when the user cancels
    std::string chooseToOpen();

    /// Lets the file dialogs start where the user has chosen a file to open.
    void rememberFolderOf(const std::string& path);

    /// Reads a file. Nothing when that fails, which tellLoadFailure() tells of.
    std::optional<Design> load(const std::string& path);
    void tellLoadFailure();

    /// Asks which draft to bring back. @param shown what is being edited
    /// @return nothing when the user cancels; more events than a design has, perhaps
    /// @throws FileError and what readDesign() throws
    std::optional<Design> recover(const Design& shown);

    /// A design has come in from a file, or from the program itself. The draft before it stays kept if it was
    /// not saved.
    void begin(const Design& design, const std::string& path = {});

    /// The program held the design before the window opened. Its draft goes on being kept.
    void resume(const Design& design);

    /// Asks for a file to save to. @return empty when the user cancels
    std::string chooseToSave();

    /// Makes the file the design's own. @throws FileError when it can't be written; all is then as it was
    void save(const Design& design, const std::string& path);

    /// Whether something would be lost with a draft. Disabled rows that a commit has dropped are no loss.
    bool isModified(const Design& draft) const;

    /// Keeps the draft if it has changed and would be lost; otherwise none is kept.
    /// @throws FileError when that fails
    void keep(const Design& draft);

    /// The window closes: the draft stays kept if it is.
    void leave() { kept_.leave(); }

private:
    struct LoadFailure {
        std::string file;
        std::string reason;
    };

    void name(const std::string& path, bool isOwn);

    Prompts& prompts_;
    FileDialogs& dialogs_;
    ProgramValues& values_;
    KeptDesigns& kept_;
    std::string path_;
    std::optional<Design> asSaved_;          ///< as a file or the program has it; nothing when none has
    std::optional<Design> lastKept_;         ///< the draft that keep() was given last
    std::optional<LoadFailure> loadFailure_; ///< until it was told
};

} // namespace zint
