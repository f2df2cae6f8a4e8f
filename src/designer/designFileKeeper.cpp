#include "designer/designFileKeeper.h"

#include "catalogue/designFile.h"
#include "shared/module1.h"
#include "shared/systemFiles.h"

#include <exception>
#include <utility>

namespace zint {
namespace {

const std::string designKinds = "OBD2 config files (*.obc)|*.obc|";
const FileKinds openKinds{.extension = "obc",
                          .filter = designKinds + "Zint log files (*.log)|*.log|" + textFileKinds.filter};
const FileKinds saveKinds{.extension = "obc", .filter = designKinds + textFileKinds.filter};

bool isLog(const std::string& path) { return upperCase(path).ends_with(".LOG"); }

bool isIn(const std::string& folder, const std::string& path)
{
    return !folder.empty() && isSameFile(utf8Path(path).parent_path(), utf8Path(folder));
}

/// The name under which a design is offered to be saved. A log's is its own, but as a design.
std::string proposedName(const std::string& path)
{
    const std::string name = fileNamePart(path);
    return isLog(name) ? utf8Text(utf8Path(name).replace_extension("obc")) : name;
}

} // namespace

std::string DesignFileKeeper::chooseToOpen()
{
    return dialogs_.chooseToOpen(openKinds,
                                 values_.isFolderRemembered ? values_.parmInitDir : values_.sampleFolder);
}

void DesignFileKeeper::rememberFolderOf(const std::string& path)
{
    if (fileExists(path) && !isIn(values_.sampleFolder, path))
        values_.rememberFolderOf(path); // nobody's own files belong among the samples
}

std::optional<Design> DesignFileKeeper::load(const std::string& path)
{
    try {
        return loadDesign(path);
    } catch (const std::exception& error) { // whatever is wrong with it
        loadFailure_ = {.file = fileNamePart(path), .reason = error.what()};
        return std::nullopt;
    }
}

void DesignFileKeeper::tellLoadFailure()
{
    if (const auto failure = std::exchange(loadFailure_, std::nullopt))
        prompts_.message("Error loading file" + failure->file, {}, failure->reason);
}

std::optional<Design> DesignFileKeeper::recover(const Design& shown)
{
    const auto chosen = chooseToRecover(prompts_, kept_.list(shown), "design");
    if (!chosen)
        return std::nullopt;
    Design draft = kept_.bringBack(*chosen);
    asSaved_.reset();
    name({}, false);
    return draft;
}

void DesignFileKeeper::begin(const Design& design, const std::string& path)
{
    kept_.leave();
    asSaved_ = design;
    name(path, !isLog(path) && !isIn(values_.sampleFolder, path)); // these only lend their design
}

void DesignFileKeeper::resume(const Design& design)
{
    kept_.leave();
    asSaved_ = design;
    path_ = values_.designPath();
    if (design.isCommitted() && kept_.resume(design))
        asSaved_.reset();
}

std::string DesignFileKeeper::chooseToSave()
{
    return dialogs_.chooseToSave(saveKinds, values_.parmInitDir, proposedName(path_));
}

void DesignFileKeeper::save(const Design& design, const std::string& path)
{
    saveDesign(path, design);
    asSaved_ = design;
    kept_.forget(); // here, for saving may have changed nothing that is kept
    name(path, true);
}

bool DesignFileKeeper::isModified(const Design& draft) const
{
    if (!asSaved_ || draft == asSaved_)
        return !asSaved_;
    Design committed = *asSaved_;
    dropUnpolled(committed);
    return draft != committed;
}

void DesignFileKeeper::keep(const Design& draft)
{
    if (draft == lastKept_)
        return;
    lastKept_ = draft;
    if (isModified(draft))
        kept_.keep(draft);
    else
        kept_.forget();
}

/// @param isOwn whether saving replaces the file; it asks for a name otherwise
void DesignFileKeeper::name(const std::string& path, bool isOwn)
{
    path_ = path;
    values_.mayOverwriteSave = isOwn && !path.empty();
    if (!values_.mayOverwriteSave)
        return;
    values_.parmSave = path;
    values_.parmSaveFile = fileNamePart(path);
}

} // namespace zint
