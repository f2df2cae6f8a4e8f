#include "commands/dtcCommand.h"

#include "commands/commandSession.h"
#include "commands/options.h"
#include "dtcdb/databaseKind.h"
#include "dtcdb/descriptionSource.h"
#include "dtcdb/dtcDatabase.h"
#include "dtcdb/dtcText.h"
#include "shared/module1.h"

#include <memory>
#include <sstream>
#include <utility>

namespace zint {
namespace {

/// Shows on standard error how far the work is.
class ShownProgress final : public Progress {
public:
    explicit ShownProgress(bool isQuiet) : isQuiet_(isQuiet) {}
    ShownProgress(const ShownProgress&) = delete;
    ShownProgress& operator=(const ShownProgress&) = delete;
    ~ShownProgress() override { showProgress({}); }

    void advance(double done) override
    {
        constexpr double whole = 100;
        if (!isQuiet_)
            showProgress(std::to_string(static_cast<int>(done * whole)) + "%");
    }

private:
    bool isQuiet_;
};

/// The database that a command is about.
class Database {
public:
    explicit Database(std::string path) : isOwn_(path.empty()), path_(std::move(path))
    {
        if (isOwn_)
            path_ = session_.values.parmDTCdb;
    }

    const std::string& path() const { return path_; }

    /// The descriptions that come with the program.
    const std::string& shipped() const { return session_.values.descriptionsFile; }

    /// Where to look codes up: without a database of its own, the program uses the shipped descriptions.
    DtcDescriptionSource source() const
    {
        const DtcDescriptionSource source(path_, isOwn_ ? shipped() : "");
        if (!source.available())
            require();
        return source;
    }

    std::unique_ptr<DtcDatabase> open() const
    {
        require();
        return DtcDatabase::open(path_);
    }

    std::unique_ptr<DtcDatabase> openForReading() const
    {
        require();
        return DtcDatabase::openForReading(path_);
    }

private:
    void require() const
    {
        if (!isSetUp(path_))
            throw DatabaseError(noDatabaseText(path_));
    }

    CommandSession session_{{}};
    bool isOwn_; ///< the one that the program uses
    std::string path_;
};

void tell(const std::string& hint)
{
    if (!hint.empty())
        complain(hint);
}

/// The notes stand below, so that each line that begins with a code is one.
int print(const DtcRecord& record)
{
    const bool hasNotes = record.notes.find_first_not_of(' ') != std::string::npos;
    return printOut(record.code + " " + record.description + "\n" +
                    (hasNotes ? "  " + record.notes + "\n" : ""));
}

int refuse(const std::string& code)
{
    complain(code + (codeFault(code) != 0 ? " is no trouble code"
                     : isMakersCode(code) ? " is the maker's own code and has no description"
                                          : " has no description"));
    return exitStatus::failure;
}

int exportToOutput(DtcDatabase& database, const DtcTextOptions& form)
{
    std::ostringstream text;
    tell(exportHint(exportDtcText(database, text, form, "\n")));
    return printOut(text.str());
}

void addDatabase(CLI::App& command, std::string& path)
{
    addFile(command, "--db", path,
            "The database of code descriptions, instead of the one that the windows use.");
}

void addTextForm(CLI::App& command, DtcTextOptions& text)
{
    addChoices<DtcFields>(
        command, "Form of the file", text.fields,
        {{"--comma", DtcFields::comma, "Code, description and notes are separated by commas (the default)."},
         {"--tab", DtcFields::tab, "By tabs."},
         {"--space", DtcFields::space,
          "By blanks. On import, all behind the first blank is the description."},
         {"--fixed", DtcFields::fixed, "They are 5, 100 and 255 characters wide."},
         {"--csv", DtcFields::csv, "As spreadsheets write it, between commas or semicolons."}});
    command.add_flag("--no-notes", text.noNotes, "Leave the notes out.")->group("Form of the file");
}

} // namespace

void DtcSetupOptions::describe(CLI::App& command)
{
    addDatabase(command, databasePath);
    command.add_flag("--if-missing", onlyIfMissing, "Do nothing when there is a database.");
    addQuiet(command, quiet);
}

void DtcLookupOptions::describe(CLI::App& command)
{
    addWord(command, "CODE", codes, "Codes such as P0301, in upper or lower case.");
    addDatabase(command, databasePath);
}

void DtcImportOptions::describe(CLI::App& command)
{
    addWord(command, "FILE", textPath, "The text file.");
    addDatabase(command, databasePath);
    addTextForm(command, text);
    command.add_flag("--overwrite", text.dupOver, "A code that the database has gets the text of the file.");
    addQuiet(command, quiet);
}

void DtcExportOptions::describe(CLI::App& command)
{
    addWord(command, "FILE", textPath, "The text file; - is standard output.");
    addDatabase(command, databasePath);
    addTextForm(command, text);
    command
        .add_flag("--delim-notes", text.delimNotes,
                  "Put a separator before the notes, too; else they stand directly behind the description.")
        ->group("Form of the file");
}

int runDtcSetup(const DtcSetupOptions& options)
{
    const Database database(options.databasePath);
    if (isSetUp(database.path())) {
        if (!options.onlyIfMissing)
            throw DatabaseError("\"" + database.path() + "\" exists already; nothing has been changed");
        DtcDatabase::openForReading(database.path()); // what can't be used is told
        return exitStatus::success;
    }
    ShownProgress progress(options.quiet);
    const DtcImport import = setUpDtcDatabase(database.path(), database.shipped(), progress);
    return printOut(std::to_string(import.added) + " code descriptions set up in " + database.path() + "\n");
}

int runDtcLookup(const DtcLookupOptions& options)
{
    const auto database = Database(options.databasePath).source().openDatabase();
    int status = exitStatus::success;
    for (const std::string& typed : options.codes) {
        const std::string code = upperCase(typed);
        const auto entry = database->find(code);
        const int printed = entry ? print(entry->record) : refuse(code);
        status = printed == exitStatus::success ? status : printed;
    }
    return status;
}

int runDtcImport(const DtcImportOptions& options)
{
    const auto database = Database(options.databasePath).open();
    ShownProgress progress(options.quiet);
    const DtcImport import = importDtcText(*database, options.textPath, options.text, progress);
    for (const std::string& text : skippedTexts(import))
        complain(text);
    tell(importHint(import));
    return printOut(importText(import, options.text.dupOver) + "\n");
}

int runDtcExport(const DtcExportOptions& options)
{
    const auto database = Database(options.databasePath).openForReading();
    if (options.textPath == "-")
        return exportToOutput(*database, options.text);
    const DtcExport done = exportDtcFile(*database, options.textPath, options.text);
    tell(exportHint(done));
    return printOut(exportText(done) + "\n");
}

} // namespace zint
