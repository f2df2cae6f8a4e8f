#include "dtcdb/dtcEditor.h"

#include "dtcdb/accessDatabase.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <filesystem>
#include <utility>
#include <vector>

namespace zint {
namespace {

const FileKinds databaseKinds{.extension = "mdb",
                              .filter = "Access db files (*.mdb)|*.mdb|All files (*.*)|*.*"};

constexpr const char* openCaption = "Open DB";
constexpr const char* createCaption = "Create New DB";
constexpr const char* closeCaption = "Close DB";

/// The same file from whatever folder the program is started.
std::string absolutePath(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(utf8Path(path), error);
    return error ? path : utf8Text(absolute);
}

/// Whether a code of another program can be kept.
bool fits(const std::string& code)
{
    return !code.empty() && firstCharacters(code, DtcDatabase::codeSize).size() == code.size();
}

} // namespace

DtcEditor::DtcEditor(Surroundings surroundings) : around_(surroundings)
{
    panel_.DTCtext = around_.values.descriptionsFile;
    changeName(around_.values.parmDTCdb);
}

void DtcEditor::unload() { database_.reset(); }

void DtcEditor::changeName(const std::string& path)
{
    panel_.dtcDBname.text = path;
    refresh();
}

void DtcEditor::pressBrowseDb()
{
    const std::string path = around_.dialogs.chooseToOpen(databaseKinds, around_.values.parmInitDir);
    if (path.empty())
        return;
    around_.values.rememberFolderOf(path);
    changeName(path);
}

void DtcEditor::pressControl()
{
    if (database_)
        close();
    else
        open();
    refresh();
}

void DtcEditor::open()
{
    const std::string path = absolutePath(panel_.dtcDBname.text);
    try {
        if (panel_.DTCcontrol.caption == createCaption)
            opened(path, DtcDatabase::create(path));
        else if (isAccessDatabase(path))
            copyFromAccess(path);
        else
            opened(path, DtcDatabase::open(path));
    } catch (const DatabaseError& error) {
        around_.prompts.message("Error opening DTC DB, please check filename", {}, error.what());
    }
}

/// The original stays as it is.
void DtcEditor::copyFromAccess(const std::string& path)
{
    const std::vector<DtcRecord> records = readAccessDatabase(path);
    if (!around_.prompts.confirm(
            "This is a database of the Access engine. Shall its " + std::to_string(records.size()) +
                " record(s) be copied into a new database of this program? The original stays "
                "as it is.",
            "Copy Descriptions"))
        return;
    const std::string copy = around_.dialogs.chooseToSave(
        databaseKinds, utf8Text(utf8Path(path).parent_path()), utf8Text(utf8Path(path).stem()) + "-copy.mdb");
    if (copy.empty())
        return;
    around_.values.rememberFolderOf(copy);
    std::size_t copied = 0;
    auto database = DtcDatabase::create(copy, [&](DtcDatabase& filled) {
        for (const DtcRecord& record : records)
            copied += fits(record.code) && filled.add(cutToSize(record)) ? 1U : 0U;
    });
    panel_.dtcDBname.text = copy;
    opened(copy, std::move(database));
    panel_.statusBox = std::to_string(copied) + " of " + std::to_string(records.size()) + " record(s) copied";
}

void DtcEditor::opened(const std::string& path, std::unique_ptr<DtcDatabase> database)
{
    auto first = database->first();
    database_ = std::move(database);
    around_.values.parmDTCdb = path;
    panel_.statusBox = first ? "DB is OPEN, DTC Editor Ready" : "Press Add or use Import to add records";
    show(std::move(first));
}

void DtcEditor::close()
{
    database_.reset();
    import_ = {};
    show(std::nullopt);
    panel_.statusBox = "DB is CLOSED";
}

void DtcEditor::show(std::optional<Entry> entry)
{
    current_ = std::move(entry);
    panel_.record = current_ ? current_->record : DtcRecord();
    refresh();
}

void DtcEditor::pressFirst() { show(database_->first()); }

void DtcEditor::pressLast() { show(database_->last()); }

void DtcEditor::pressNext()
{
    auto next = current_ ? database_->after(current_->record.code) : std::nullopt;
    show(next ? std::move(next) : database_->last());
}

void DtcEditor::pressPrev()
{
    auto previous = current_ ? database_->before(current_->record.code) : std::nullopt;
    show(previous ? std::move(previous) : database_->first());
}

void DtcEditor::pressSearch(const std::string& code)
{
    auto found = database_->find(code);
    panel_.statusBox = found ? "" : "DTC not found, using closest match";
    if (!found)
        found = database_->after(code);
    show(found ? std::move(found) : database_->before(code));
}

void DtcEditor::pressAdd()
{
    mode_ = Mode::adding;
    panel_.record = {.code = "Pxxyy", .description = {}, .notes = {}}; // a pattern to overwrite
    refresh();
    focus(&DtcRecord::code);
}

void DtcEditor::pressEdit()
{
    auto now = database_->read(current_->key);
    if (!now) { // another program has removed it
        pressNext();
        panel_.statusBox = "The record is gone, this is the next one";
        refresh();
        return;
    }
    mode_ = Mode::changing;
    show(std::move(now));
    focus(&DtcRecord::description);
}

void DtcEditor::type(Box box, const std::string& text)
{
    if (mode_ != Mode::browsing)
        panel_.record.*box = text;
}

void DtcEditor::pressSave()
{
    const DtcRecord& record = panel_.record;
    if (record.code.empty() || record.description.empty()) {
        refuse("Field cannot be blank", record.code.empty() ? &DtcRecord::code : &DtcRecord::description);
        return;
    }
    if (const int place = codeFault(record.code); place > 0) {
        refuse("Invalid DTC Code", &DtcRecord::code, static_cast<std::size_t>(place) - 1);
        return;
    }
    if (!store(record))
        return;
    const std::string code = record.code;
    endEditing("DTC saved");
    show(database_->find(code));
}

/// @return whether it is in the table now; else the status tells why not
bool DtcEditor::store(const DtcRecord& record)
{
    if (mode_ == Mode::adding) {
        if (database_->add(record))
            return true;
        refuse("Duplicate DTC code found", &DtcRecord::code);
        return false;
    }
    switch (database_->update(current_->key, record)) {
    case DtcDatabase::Update::done:
        return true;
    case DtcDatabase::Update::codeInUse:
        refuse("Code is already in use", &DtcRecord::code);
        break;
    case DtcDatabase::Update::gone:
        refuse("The record is gone: another program has deleted it", &DtcRecord::code);
        break;
    }
    return false;
}

void DtcEditor::refuse(const char* why, Box box, std::optional<std::size_t> place)
{
    panel_.statusBox = why;
    refresh();
    focus(box, place);
}

void DtcEditor::pressCancel()
{
    endEditing(mode_ == Mode::adding ? "DTC add canceled" : "DTC update canceled");
    auto old = current_ ? database_->read(current_->key) : std::nullopt;
    show(old ? std::move(old) : database_->first());
}

/// Shows the record as it was last read, should the file fail now.
void DtcEditor::endEditing(const char* status)
{
    mode_ = Mode::browsing;
    panel_.statusBox = status;
    show(current_);
}

void DtcEditor::pressDelete()
{
    auto next = database_->after(current_->record.code);
    if (!next)
        next = database_->before(current_->record.code);
    database_->remove(current_->key);
    panel_.statusBox = "DTC deleted";
    show(std::move(next));
}

void DtcEditor::changeTextFile(const std::string& path) { panel_.DTCtext = path; }

void DtcEditor::pressBrowseText()
{
    const std::string path = around_.dialogs.chooseAny(textFileKinds, around_.values.parmInitDir);
    if (path.empty())
        return;
    around_.values.rememberFolderOf(path);
    panel_.DTCtext = path;
    refresh();
}

void DtcEditor::pressImport()
{
    import_ = {};
    panel_.statusBox = "Import stopped, the table is as it was"; // unless it comes to its end
    try {
        const bool isDone =
            around_.prompts.runLong("Importing " + fileNamePart(panel_.DTCtext), [this](Progress& progress) {
                import_ = importDtcText(*database_, panel_.DTCtext, options_, progress);
            });
        if (isDone)
            panel_.statusBox = importText(import_, options_.dupOver);
        show(database_->first());
    } catch (...) {
        refresh();
        throw;
    }
}

void DtcEditor::pressExport()
{
    const std::int64_t count = exportDtcText(*database_, panel_.DTCtext, options_);
    panel_.statusBox = exportText(count);
    show(database_->first());
}

void DtcEditor::showSkipped()
{
    std::string text;
    for (const std::string& line : skippedTexts(import_))
        text += line + "\r\n";
    around_.prompts.message(text, "Skipped Lines");
}

void DtcEditor::focus(Box box, std::optional<std::size_t> place) const
{
    if (onFocus)
        onFocus(box, place);
}

/// Brings the panel's controls to what can be done now.
void DtcEditor::refresh()
{
    const bool isOpen = database_ != nullptr;
    const bool isBrowsing = isOpen && mode_ == Mode::browsing;
    panel_.DTCcontrol.caption = isOpen                              ? closeCaption
                                : fileExists(panel_.dtcDBname.text) ? openCaption
                                                                    : createCaption;
    panel_.DTCcontrol.enabled = !isOpen || isBrowsing;
    panel_.dtcDBname.enabled = !isOpen;
    panel_.isOpen = isOpen;
    panel_.isEditing = isOpen && !isBrowsing;
    panel_.canAdd = panel_.canExchange = isBrowsing;
    const std::optional<std::int64_t> count = recordCount();
    panel_.canBrowse = isBrowsing && (current_ || count.value_or(0) > 0);
    panel_.canChange = isBrowsing && current_;
    panel_.canShowSkipped = isBrowsing && import_.skipped > 0;
    panel_.DTCframe = "Current DTC Record";
    if (count)
        panel_.DTCframe += " (" + std::to_string(*count) + " Record(s) Total)";
    if (onChanged)
        onChanged();
}

/// Nothing without a database, and where it fails: a record can be shown without it.
std::optional<std::int64_t> DtcEditor::recordCount() const
{
    try {
        return database_ ? std::optional(database_->count()) : std::nullopt;
    } catch (const DatabaseError&) {
        return std::nullopt;
    }
}

} // namespace zint
