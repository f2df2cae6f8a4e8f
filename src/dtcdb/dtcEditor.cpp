#include "dtcdb/dtcEditor.h"

#include "dtcdb/accessDatabase.h"
#include "dtcdb/databaseKind.h"
#include "shared/module1.h"
#include "shared/utf8.h"

#include <filesystem>
#include <sstream>
#include <utility>

namespace zint {
namespace {

const FileKinds databaseKinds{.extension = "mdb",
                              .filter = "Access db files (*.mdb)|*.mdb|All files (*.*)|*.*"};

constexpr const char* openCaption = "Open DB";
constexpr const char* createCaption = "Create New DB";
constexpr const char* closeCaption = "Close DB";

constexpr const char* goneText = "The record is gone, this is the next one";
constexpr std::size_t mostFound = 1000;

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

std::vector<std::string> wordsOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

/// What is known of a code that the table does not have; empty for what is no code.
std::string unknownCodeText(const std::string& typed)
{
    const std::string code = upperCase(typed);
    if (codeFault(code) != 0)
        return {};
    return code + (isMakersCode(code) ? " is the maker's own code" : " has no description");
}

} // namespace

DtcEditor::DtcEditor(Surroundings surroundings) : around_(surroundings)
{
    panel_.DTCtext = around_.values.descriptionsFile;
    changeName(around_.values.parmDTCdb);
}

void DtcEditor::unload() { database_.reset(); }

/// What a button does: what earlier ones told goes, and all that changed is shown once.
template <typename Work>
void DtcEditor::press(const Work& work)
{
    panel_.statusBox.clear();
    panel_.textHint.clear();
    note_.clear();
    focus_.reset();
    try {
        work();
    } catch (...) {
        refresh();
        throw;
    }
    refresh();
    if (focus_ && onFocus)
        onFocus(focus_->box, focus_->place);
}

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
    press([this] {
        if (database_)
            close();
        else
            open();
    });
}

void DtcEditor::open()
{
    const std::string path = absolutePath(panel_.dtcDBname.text);
    try {
        if (panel_.DTCcontrol.caption == createCaption)
            opened(path, DtcDatabase::create(path));
        else if (databaseKind(path) == DatabaseKind::access)
            copyFromAccess(path);
        else
            opened(path, DtcDatabase::open(path, around_.patience));
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
    std::size_t copied = 0;
    auto database = DtcDatabase::create(copy, [&](DtcDatabase& filled) {
        for (const DtcRecord& record : records)
            copied += fits(record.code) && filled.add(cutToSize(record)) ? 1U : 0U;
    });
    around_.values.rememberFolderOf(copy);
    panel_.dtcDBname.text = copy;
    opened(copy, std::move(database));
    panel_.statusBox = std::to_string(copied) + " of " + std::to_string(records.size()) + " record(s) copied";
}

void DtcEditor::opened(const std::string& path, std::unique_ptr<DtcDatabase> database)
{
    auto first = database->first();
    database_ = std::move(database);
    around_.values.parmDTCdb = path;
    if (database_->isReadOnly())
        panel_.statusBox = "DB is OPEN, but can only be read: you may not write to the file or its folder";
    else
        panel_.statusBox = first ? "DB is OPEN, DTC Editor Ready" : "Press Add or use Import to add records";
    show(std::move(first));
}

void DtcEditor::close()
{
    database_.reset();
    import_ = {};
    deleted_.reset();
    show(std::nullopt);
    panel_.statusBox = "DB is CLOSED";
}

void DtcEditor::show(std::optional<Entry> entry)
{
    current_ = std::move(entry);
    countRecords();
}

void DtcEditor::showNext()
{
    auto next = current_ ? database_->after(current_->record.code) : std::nullopt;
    show(next ? std::move(next) : database_->last());
}

void DtcEditor::pressFirst()
{
    press([this] { show(database_->first()); });
}

void DtcEditor::pressLast()
{
    press([this] { show(database_->last()); });
}

void DtcEditor::pressNext()
{
    press([this] { showNext(); });
}

void DtcEditor::pressPrev()
{
    press([this] {
        auto previous = current_ ? database_->before(current_->record.code) : std::nullopt;
        show(previous ? std::move(previous) : database_->first());
    });
}

void DtcEditor::pressSearch(const std::string& code)
{
    press([&] {
        auto found = database_->find(code);
        if (!found) {
            panel_.statusBox = "DTC not found, using closest match";
            note_ = unknownCodeText(code);
            const char* place = " - next is ";
            found = database_->after(code);
            if (!found) {
                place = " - the last one is ";
                found = database_->before(code);
            }
            if (!note_.empty() && found)
                note_ += place + found->record.code;
        }
        show(std::move(found));
    });
}

void DtcEditor::pressFindWords()
{
    press([this] {
        const auto typed =
            around_.prompts.input("Words or parts of words of the description:", "Find Words", words_);
        if (!typed || wordsOf(*typed).empty())
            return;
        words_ = *typed;
        const std::vector<DtcRecord> found = database_->containing(wordsOf(words_), mostFound);
        if (found.empty())
            panel_.statusBox = "No description holds \"" + words_ + "\"";
        else
            choose(found);
    });
}

void DtcEditor::choose(const std::vector<DtcRecord>& found)
{
    std::vector<std::string> lines;
    lines.reserve(found.size());
    for (const DtcRecord& record : found)
        lines.push_back(record.code + " " + record.description);
    const std::string text = found.size() < mostFound
                                 ? std::to_string(found.size()) + " description(s) found:"
                                 : "The first " + std::to_string(mostFound) + " descriptions found:";
    const auto chosen = around_.prompts.choose(text, "Find Words", lines);
    if (!chosen)
        return;
    if (auto entry = database_->find(found[*chosen].code))
        show(std::move(entry));
}

void DtcEditor::pressAdd()
{
    press([this] {
        draft_ = Draft{.record = {.code = "Pxxyy", .description = {}, .notes = {}}, // a pattern to overwrite
                       .isNew = true};
        focus_ = Focus{&DtcRecord::code, {}};
    });
}

void DtcEditor::pressEdit()
{
    press([this] {
        auto now = database_->read(*current_);
        if (!now) { // another program has removed it
            showNext();
            panel_.statusBox = goneText;
            return;
        }
        show(std::move(now));
        draft_ = Draft{.record = cutToSize(current_->record), .isNew = false};
        if (draft_->record != current_->record)
            panel_.statusBox = "The texts are longer than the boxes: Save cuts them";
        focus_ = Focus{&DtcRecord::description, {}};
    });
}

void DtcEditor::type(Box box, const std::string& text)
{
    if (draft_)
        panel_.record.*box = draft_->record.*box = text;
}

void DtcEditor::pressSave()
{
    press([this] {
        const DtcRecord record = draft_->record;
        if (record.code.empty() || record.description.empty())
            refuse("Field cannot be blank", record.code.empty() ? &DtcRecord::code : &DtcRecord::description);
        else if (const int place = codeFault(record.code); place > 0)
            refuse("Invalid DTC Code", &DtcRecord::code, static_cast<std::size_t>(place) - 1);
        else if (store(record)) {
            deleted_.reset();
            endEditing("DTC saved");
            show(database_->find(record.code));
        }
    });
}

/// @return whether it is in the table now; else the status tells why not
bool DtcEditor::store(const DtcRecord& record)
{
    if (draft_->isNew) {
        if (database_->add(record))
            return true;
        refuse("Duplicate DTC code found", &DtcRecord::code);
        return false;
    }
    switch (database_->update(*current_, record)) {
    case DtcDatabase::Update::done:
        return true;
    case DtcDatabase::Update::codeInUse:
        refuse("Code is already in use", &DtcRecord::code);
        break;
    case DtcDatabase::Update::gone:
        refuse("The record is gone: another program has deleted it", &DtcRecord::code);
        break;
    case DtcDatabase::Update::changed:
        refuse("Another program has changed the record: Save again replaces that, Cancel shows it",
               &DtcRecord::description);
        if (auto now = database_->read(*current_))
            current_ = std::move(now);
        break;
    }
    return false;
}

void DtcEditor::refuse(const char* why, Box box, std::optional<std::size_t> place)
{
    panel_.statusBox = why;
    focus_ = Focus{box, place};
}

void DtcEditor::pressCancel()
{
    press([this] {
        endEditing(draft_->isNew ? "DTC add canceled" : "DTC update canceled");
        auto old = current_ ? database_->read(*current_) : std::nullopt;
        show(old ? std::move(old) : database_->first());
    });
}

/// The record is shown as it was last read, should the file fail now.
void DtcEditor::endEditing(const char* status)
{
    draft_.reset();
    panel_.statusBox = status;
}

void DtcEditor::pressDelete()
{
    press([this] {
        auto next = database_->after(current_->record.code);
        if (!next)
            next = database_->before(current_->record.code);
        const bool isDeleted = database_->remove(*current_);
        if (isDeleted)
            deleted_ = current_->record;
        panel_.statusBox = isDeleted ? "DTC deleted" : goneText;
        show(std::move(next));
    });
}

void DtcEditor::pressUndoDelete()
{
    press([this] {
        const bool isBack = database_->add(*deleted_);
        panel_.statusBox = isBack ? "The deleted record is back" : "Duplicate DTC code found";
        show(database_->find(deleted_->code));
        if (isBack)
            deleted_.reset();
    });
}

void DtcEditor::changeTextFile(const std::string& path) { panel_.DTCtext = path; }

void DtcEditor::setOptions(const DtcTextOptions& options)
{
    options_ = options;
    panel_.canDelimNotes = options.fields != DtcFields::csv;
    refresh();
}

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
    press([this] {
        import_ = {};
        panel_.statusBox = "Import stopped, the table is as it was"; // unless it comes to its end
        const bool isDone =
            around_.prompts.runLong("Importing " + fileNamePart(panel_.DTCtext), [this](Progress& progress) {
                import_ = importDtcText(*database_, panel_.DTCtext, options_, progress);
            });
        if (!isDone)
            return;
        deleted_.reset();
        panel_.statusBox = importText(import_, options_.dupOver);
        panel_.textHint = importHint(import_);
        show(database_->first());
    });
}

void DtcEditor::pressExport()
{
    press([this] {
        const std::string path = absolutePath(panel_.DTCtext);
        panel_.statusBox = "Export stopped, the file is as it was";
        if (!mayReplace(path))
            return;
        const DtcExport done = exportDtcFile(*database_, path, options_);
        lastExport_ = path;
        panel_.statusBox = exportText(done);
        panel_.textHint = exportHint(done);
        show(database_->first());
    });
}

/// A list that was just imported may be the only one; what the last export wrote is in the table.
bool DtcEditor::mayReplace(const std::string& path)
{
    if (!fileExists(path) || path == lastExport_)
        return true;
    std::string text = "\"" + path + "\" exists. Shall the exported records take the place of what is in it?";
    if (path == absolutePath(around_.values.descriptionsFile))
        text += "\r\n\r\nIt is the file that comes with the program, from which databases are set up.";
    return around_.prompts.confirm(text, "Export");
}

void DtcEditor::showSkipped()
{
    std::string text;
    for (const std::string& line : skippedTexts(import_))
        text += line + "\r\n";
    around_.prompts.message(text, "Skipped Lines");
}

/// A record can be shown without the count.
void DtcEditor::countRecords()
{
    try {
        count_ = database_ ? std::optional(database_->count()) : std::nullopt;
    } catch (const DatabaseError&) {
        count_.reset();
    }
}

/// Brings the panel's controls to what can be done now.
void DtcEditor::refresh()
{
    const bool isOpen = database_ != nullptr;
    const bool isBrowsing = isOpen && !draft_;
    const bool isWritable = isBrowsing && !database_->isReadOnly();
    panel_.DTCcontrol.caption = isOpen                              ? closeCaption
                                : fileExists(panel_.dtcDBname.text) ? openCaption
                                                                    : createCaption;
    panel_.DTCcontrol.enabled = !isOpen || isBrowsing;
    panel_.dtcDBname.enabled = !isOpen;
    panel_.record = draft_ ? draft_->record : current_ ? cutToSize(current_->record) : DtcRecord();
    panel_.isOpen = isOpen;
    panel_.isEditing = draft_.has_value();
    panel_.canAdd = panel_.canImport = isWritable;
    panel_.canExport = isBrowsing;
    panel_.canBrowse = isBrowsing && (current_ || count_.value_or(0) > 0);
    panel_.canChange = isWritable && current_;
    panel_.canUndoDelete = isWritable && deleted_;
    panel_.canShowSkipped = isBrowsing && import_.skipped > 0;
    panel_.DTCframe = "Current DTC Record";
    if (count_)
        panel_.DTCframe += " (" + std::to_string(*count_) + " Record(s) Total)";
    if (!note_.empty())
        panel_.DTCframe += ": " + note_;
    if (onChanged)
        onChanged();
}

} // namespace zint
