#include "dtcdb/dtcDatabase.h"

#include "dtcdb/databaseKind.h"
#include "shared/module1.h"
#include "shared/textFile.h"
#include "shared/utf8.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/SQLiteCpp.h>
#include <SQLiteCpp/VariadicBind.h>
#include <sqlite3.h>

#include <filesystem>
#include <utility>

namespace zint {
namespace {

constexpr const char* layout = "CREATE TABLE DTCset (Code TEXT, Description TEXT, Notes TEXT);"
                               "CREATE UNIQUE INDEX DTCndx ON DTCset (Code COLLATE NOCASE);";

constexpr const char* select = "SELECT rowid, Code, Description, Notes FROM DTCset ";
constexpr const char* thisCode = "WHERE Code = ?1 COLLATE NOCASE";
constexpr const char* nextCode =
    "WHERE Code > ?1 COLLATE NOCASE AND typeof(Code) = 'text' ORDER BY Code COLLATE NOCASE LIMIT 1";
constexpr const char* previousCode =
    "WHERE Code < ?1 COLLATE NOCASE ORDER BY Code COLLATE NOCASE DESC LIMIT 1";
constexpr const char* firstCode = "ORDER BY Code COLLATE NOCASE LIMIT 1";
constexpr const char* lastCode = "ORDER BY Code COLLATE NOCASE DESC LIMIT 1";
constexpr const char* thisRecord = "WHERE rowid = ?1 AND ifnull(CAST(Code AS TEXT), '') = ?2";

// Another program's index of the same name may compare otherwise, or not hold codes apart.
constexpr const char* soundIndexes =
    "SELECT COUNT(*) FROM pragma_index_list('DTCset') AS list WHERE list.name = 'DTCndx' COLLATE NOCASE"
    " AND list.\"unique\" AND NOT list.partial AND (SELECT group_concat(upper(field.name || ' ' || "
    "field.coll))"
    " FROM pragma_index_xinfo(list.name) AS field WHERE field.key) = 'CODE NOCASE'";

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw DatabaseError("The code descriptions in \"" + path + "\" can't be " + why);
}

void checkKind(const std::string& path)
{
    switch (databaseKind(path)) {
    case DatabaseKind::sqlite:
        return;
    case DatabaseKind::access:
        refuse(path,
               "read: this is a database of the Access engine. Open it in the DTC Editor, which can copy its "
               "records.");
    case DatabaseKind::empty:
        refuse(path, "read: the file is empty. Set Up Code Descriptions in the launcher fills it; or delete "
                     "it, so that a "
                     "new database can be made.");
    case DatabaseKind::unreadable:
        refuse(path, "read: the file is missing or you may not read it.");
    case DatabaseKind::other:
        refuse(path, "read: the file is no database of this program. Choose another file.");
    }
}

/// Calls what uses the database and tells the user why it failed.
template <typename Work>
auto guarded(const std::string& path, Work work)
{
    try {
        return work();
    } catch (const SQLite::Exception& error) {
        const std::string why = error.what();
        if (error.getExtendedErrorCode() == SQLITE_READONLY_DBMOVED)
            refuse(path, "written: the file was moved or deleted. Close it and open it again.");
        switch (error.getErrorCode()) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            refuse(path, "used: another program is writing to it. Try again when it has finished.");
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            refuse(path, "read: the file is damaged (" + why + "). Restore it from a copy.");
        case SQLITE_FULL:
            refuse(path, "written: there is no room left. Free some and try again.");
        case SQLITE_READONLY:
            refuse(path, "written: you may only read the file or its folder. Copy it to a folder of yours.");
        default:
            refuse(path, "used: " + why + ".");
        }
    }
}

/// Calls what handles the file as a whole.
template <typename Work>
void filesGuarded(Work work)
{
    try {
        work();
    } catch (const FileError& error) {
        throw DatabaseError(error.what());
    }
}

/// A file that is gone in the end, unless it has got another name.
struct Removed {
    explicit Removed(std::string file) : path(std::move(file)) {}
    Removed(const Removed&) = delete;
    Removed& operator=(const Removed&) = delete;
    ~Removed()
    {
        std::error_code ignored;
        std::filesystem::remove(utf8Path(path), ignored);
    }

    const std::string path;
};

DtcRecord recordOf(const SQLite::Statement& row)
{
    return {.code = row.getColumn(1).getString(),
            .description = row.getColumn(2).getString(),
            .notes = row.getColumn(3).getString()};
}

/// A pattern of LIKE for texts that hold a word.
std::string patternOf(std::string_view word)
{
    std::string pattern = "%";
    for (const char c : word) {
        if (c == '%' || c == '_' || c == '\\')
            pattern += '\\';
        pattern += c;
    }
    return pattern + "%";
}

/// Ends a statement's run: it would keep others from writing.
class Finished {
public:
    explicit Finished(SQLite::Statement& statement) : statement_(statement) {}
    Finished(const Finished&) = delete;
    Finished& operator=(const Finished&) = delete;
    ~Finished() { statement_.tryReset(); }

private:
    SQLite::Statement& statement_;
};

} // namespace

DtcDatabase::DtcDatabase(std::string path, std::unique_ptr<SQLite::Database> database)
    : path_(std::move(path)), database_(std::move(database))
{
}

DtcDatabase::~DtcDatabase() = default;

/// Also for reading the file is opened for writing, where that is allowed: a program that was killed may have
/// left changes that are to be undone first.
std::unique_ptr<DtcDatabase> DtcDatabase::connect(const std::string& path, std::chrono::milliseconds patience)
{
    return guarded(path, [&] {
        auto file = std::make_unique<SQLite::Database>(path, SQLite::OPEN_READWRITE,
                                                       static_cast<int>(patience.count()));
        return std::unique_ptr<DtcDatabase>(new DtcDatabase(path, std::move(file)));
    });
}

std::unique_ptr<DtcDatabase> DtcDatabase::openForReading(const std::string& path,
                                                         std::chrono::milliseconds patience)
{
    checkKind(path);
    auto database = connect(path, patience);
    database->requireTable();
    return database;
}

std::unique_ptr<DtcDatabase> DtcDatabase::open(const std::string& path, std::chrono::milliseconds patience)
{
    auto database = openForReading(path, patience);
    database->requireIndex();
    database->isReadOnly_ = !database->mayWrite();
    return database;
}

void DtcDatabase::requireTable()
{
    if (number("SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' AND name = 'DTCset'") == 0)
        refuse(path_, "read: it has no table \"DTCset\". Choose another file.");
    find({}); // fails when a field is missing
}

void DtcDatabase::requireIndex()
{
    if (number(soundIndexes) == 0)
        refuse(path_,
               "edited: it has no index \"DTCndx\" that allows each code once, in capitals or small letters. "
               "Choose another file, or export its records and import them into a new database.");
}

/// The records are gathered in memory and written at once, into a file that gets its name when it is whole.
std::unique_ptr<DtcDatabase> DtcDatabase::create(const std::string& path,
                                                 const std::function<void(DtcDatabase&)>& fill)
{
    const std::string file = behindLink(path);
    filesGuarded([&] { requireWritable(file); });
    const auto filled = createInMemory(fill);
    const Removed fresh(newNameBeside(file));
    guarded(path, [&] {
        SQLite::Database made(fresh.path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        made.exec("PRAGMA journal_mode = MEMORY"); // half of it is deleted, not undone
        if (SQLite::Backup(made, *filled->database_).executeStep() != SQLITE_DONE) // it may be locked
            refuse(path, "made: another program uses the new file. Try again.");
    });
    filesGuarded([&] { publishFile(fresh.path, file); });
    return open(path);
}

std::unique_ptr<DtcDatabase> DtcDatabase::createInMemory(const std::function<void(DtcDatabase&)>& fill)
{
    return guarded("memory", [&] {
        auto data = std::make_unique<SQLite::Database>(":memory:", SQLite::OPEN_READWRITE);
        std::unique_ptr<DtcDatabase> database(new DtcDatabase({}, std::move(data)));
        database->makeTable(fill);
        return database;
    });
}

void DtcDatabase::makeTable(const std::function<void(DtcDatabase&)>& fill)
{
    inOneStep([&] {
        execute(layout);
        if (fill)
            fill(*this);
    });
}

/// Only a change makes sure of that; it is undone.
bool DtcDatabase::mayWrite()
{
    const std::string version = std::to_string(number("PRAGMA user_version"));
    return guarded(path_, [&] {
        try {
            database_->exec("BEGIN IMMEDIATE");
            database_->exec("PRAGMA user_version = " + version);
            database_->exec("ROLLBACK");
            return true;
        } catch (const SQLite::Exception& error) {
            database_->tryExec("ROLLBACK");
            if (error.getErrorCode() == SQLITE_READONLY)
                return false;
            throw;
        }
    });
}

void DtcDatabase::execute(const std::string& sql)
{
    guarded(path_, [&] { return database_->exec(sql); });
}

SQLite::Statement& DtcDatabase::statement(const std::string& sql)
{
    auto found = statements_.find(sql);
    if (found == statements_.end())
        found = statements_.try_emplace(sql, *database_, sql).first;
    return found->second;
}

std::int64_t DtcDatabase::number(const char* sql)
{
    return guarded(path_, [&] {
        SQLite::Statement& query = statement(sql);
        const Finished finished(query);
        return query.executeStep() ? query.getColumn(0).getInt64() : 0;
    });
}

template <typename... Values>
std::optional<DtcDatabase::Entry> DtcDatabase::entry(const char* condition, const Values&... values)
{
    return guarded(path_, [&] {
        SQLite::Statement& query = statement(std::string(select) + condition);
        const Finished finished(query);
        SQLite::bind(query, values...);
        std::optional<Entry> found;
        if (query.executeStep())
            found = {.key = query.getColumn(0).getInt64(), .record = recordOf(query)};
        return found;
    });
}

std::optional<std::string> DtcDatabase::describe(std::string_view code)
{
    const auto found = find(std::string(code));
    return found ? std::optional(found->record.description) : std::nullopt;
}

std::int64_t DtcDatabase::count()
{
    const std::int64_t version = number("PRAGMA data_version"); // tells whether another program has written
    if (version != countedVersion_) {
        count_ = number("SELECT COUNT(*) FROM DTCset");
        countedVersion_ = version;
    }
    return count_;
}

std::optional<DtcDatabase::Entry> DtcDatabase::first() { return entry(firstCode); }

std::optional<DtcDatabase::Entry> DtcDatabase::last() { return entry(lastCode); }

std::optional<DtcDatabase::Entry> DtcDatabase::find(const std::string& code) { return entry(thisCode, code); }

std::optional<DtcDatabase::Entry> DtcDatabase::after(const std::string& code)
{
    return entry(nextCode, code);
}

std::optional<DtcDatabase::Entry> DtcDatabase::before(const std::string& code)
{
    return entry(previousCode, code);
}

std::optional<DtcDatabase::Entry> DtcDatabase::read(const Entry& known)
{
    return entry(thisRecord, known.key, known.record.code);
}

std::vector<DtcRecord> DtcDatabase::containing(const std::vector<std::string>& words, std::size_t most)
{
    std::string sql = std::string(select) + "WHERE typeof(Code) = 'text'";
    for (std::size_t i = 0; i < words.size(); ++i)
        sql += " AND Description LIKE ? ESCAPE '\\'";
    return guarded(path_, [&] {
        SQLite::Statement& query = statement(sql + " ORDER BY Code COLLATE NOCASE");
        const Finished finished(query);
        int place = 0;
        for (const std::string& word : words)
            query.bind(++place, patternOf(word));
        std::vector<DtcRecord> found;
        while (found.size() < most && query.executeStep())
            found.push_back(recordOf(query));
        return found;
    });
}

/// @return how many records it concerned
template <typename... Values>
int DtcDatabase::change(const std::string& sql, const Values&... values)
{
    countedVersion_ = noVersion;
    return guarded(path_, [&] {
        SQLite::Statement& command = statement(sql);
        const Finished finished(command);
        SQLite::bind(command, values...);
        return command.exec();
    });
}

bool DtcDatabase::add(const DtcRecord& record)
{
    return change("INSERT OR IGNORE INTO DTCset (Code, Description, Notes) VALUES (?1, ?2, ?3)", record.code,
                  record.description, record.notes) > 0;
}

DtcDatabase::Update DtcDatabase::update(const Entry& known, const DtcRecord& record)
{
    const std::string sql =
        "UPDATE OR IGNORE DTCset SET Code = ?3, Description = ?4, Notes = ?5 " + std::string(thisRecord) +
        " AND ifnull(CAST(Description AS TEXT), '') = ?6 AND ifnull(CAST(Notes AS TEXT), '') = ?7";
    const DtcRecord& old = known.record;
    if (change(sql, known.key, old.code, record.code, record.description, record.notes, old.description,
               old.notes) > 0)
        return Update::done;
    const auto now = read(known);
    if (!now)
        return Update::gone;
    return now->record == old ? Update::codeInUse : Update::changed;
}

bool DtcDatabase::remove(const Entry& known)
{
    return change("DELETE FROM DTCset " + std::string(thisRecord), known.key, known.record.code) > 0;
}

void DtcDatabase::inOneStep(const std::function<void()>& work)
{
    if (sqlite3_get_autocommit(database_->getHandle()) == 0) { // a part of a larger step
        work();
        return;
    }
    execute("BEGIN IMMEDIATE");
    try {
        work();
        execute("COMMIT");
    } catch (...) {
        countedVersion_ = noVersion;
        database_->tryExec("ROLLBACK");
        throw;
    }
}

DtcRecord cutToSize(const DtcRecord& record)
{
    return {.code = record.code,
            .description = std::string(firstCharacters(record.description, DtcDatabase::descriptionSize)),
            .notes = std::string(firstCharacters(record.notes, DtcDatabase::notesSize))};
}

} // namespace zint
