#include "commands/dtcCommand.h"

#include "commands/commandSession.h"
#include "dtcdb/databaseKind.h"
#include "dtcdb/descriptionSource.h"
#include "dtcdb/dtcDatabase.h"
#include "dtcdb/dtcText.h"
#include "shared/module1.h"

#include <sstream>

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

/// One of the commands, and the database that it is about.
class DtcRun {
public:
    explicit DtcRun(const CommandLine& line)
        : line_(line), session_(line.connection),
          path_(line.databasePath.empty() ? session_.values.parmDTCdb : line.databasePath)
    {
    }

    int setUp()
    {
        if (isSetUp(path_)) {
            if (line_.onlyIfMissing) {
                DtcDatabase::openForReading(path_); // what can't be used is told
                return exitStatus::success;
            }
            throw DatabaseError("\"" + path_ + "\" exists already; nothing has been changed");
        }
        ShownProgress progress(line_.quiet);
        const DtcImport import = setUpDtcDatabase(path_, session_.values.descriptionsFile, progress);
        return printOut(std::to_string(import.added) + " code descriptions set up in " + path_ + "\n");
    }

    int lookUp()
    {
        const DtcDescriptionSource source(path_,
                                          line_.databasePath.empty() ? session_.values.descriptionsFile : "");
        if (!source.available())
            requireDatabase();
        const auto database = source.openDatabase();
        int status = exitStatus::success;
        for (const std::string& typed : line_.codes) {
            const std::string code = upperCase(typed);
            const auto entry = database->find(code);
            const int printed = entry ? print(entry->record) : refuse(code);
            status = printed == exitStatus::success ? status : printed;
        }
        return status;
    }

    int importText()
    {
        requireDatabase();
        const auto database = DtcDatabase::open(path_);
        ShownProgress progress(line_.quiet);
        const DtcImport import = importDtcText(*database, line_.textPath, line_.textOptions, progress);
        for (const std::string& text : skippedTexts(import))
            complain(text);
        tell(importHint(import));
        return printOut(zint::importText(import, line_.textOptions.dupOver) + "\n");
    }

    int exportText()
    {
        requireDatabase();
        const auto database = DtcDatabase::openForReading(path_);
        if (line_.textPath == "-")
            return exportToOutput(*database);
        const DtcExport done = exportDtcFile(*database, line_.textPath, line_.textOptions);
        tell(exportHint(done));
        return printOut(zint::exportText(done) + "\n");
    }

private:
    void requireDatabase() const
    {
        if (!isSetUp(path_))
            throw DatabaseError(noDatabaseText(path_));
    }

    static void tell(const std::string& hint)
    {
        if (!hint.empty())
            complain(hint);
    }

    /// The notes stand below, so that each line that begins with a code is one.
    static int print(const DtcRecord& record)
    {
        const bool hasNotes = record.notes.find_first_not_of(' ') != std::string::npos;
        return printOut(record.code + " " + record.description + "\n" +
                        (hasNotes ? "  " + record.notes + "\n" : ""));
    }

    static int refuse(const std::string& code)
    {
        complain(code + (codeFault(code) != 0 ? " is no trouble code"
                         : isMakersCode(code) ? " is the maker's own code and has no description"
                                              : " has no description"));
        return exitStatus::failure;
    }

    int exportToOutput(DtcDatabase& database) const
    {
        std::ostringstream text;
        tell(exportHint(exportDtcText(database, text, line_.textOptions, "\n")));
        return printOut(text.str());
    }

    const CommandLine& line_;
    CommandSession session_;
    std::string path_;
};

} // namespace

int runDtcCommand(const CommandLine& line)
{
    return telling([&line] {
        DtcRun run(line);
        switch (line.action) {
        case CommandLine::Action::setUpDescriptions:
            return run.setUp();
        case CommandLine::Action::lookUpCodes:
            return run.lookUp();
        case CommandLine::Action::importDescriptions:
            return run.importText();
        default:
            return run.exportText();
        }
    });
}

} // namespace zint
