#include "dtcdb/dtcDatabase.h"

#include "shared/module1.h"
#include "shared/textFile.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <SQLiteCpp/VariadicBind.h>
#include <sqlite3.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <utility>

namespace zint {
namespace {

constexpr int lockPatienceMs = 2000;

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
constexpr const char* thisKey = "WHERE rowid = ?1";

enum class FileKind { sqlite, access, empty, other, unreadable };

FileKind kindOf(const std::string& path)
{
    if (!fileExists(path)) // a folder would open, and hold no bytes
        return FileKind::unreadable;
    std::ifstream file(utf8Path(path), std::ios::binary);
    if (!file)
        return FileKind::unreadable;
    std::array<char, 19> start{};
    file.read(start.data(), start.size());
    const std::string_view head(start.data(), static_cast<std::size_t>(file.gcount()));
    if (head.empty())
        return FileKind::empty;
    if (head.starts_with("SQLite format 3"))
        return FileKind::sqlite;
    const std::string_view engine = textAt(head, 5, 15);
    return engine.starts_with("Standard Jet DB") || engine.starts_with("Standard ACE DB") ? FileKind::access
                                                                                          : FileKind::other;
}

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw DatabaseError("The code descriptions in \"" + path + "\" can't be " + why);
}

void checkKind(const std::string& path)
{
    switch (kindOf(path)) {
    case FileKind::sqlite:
        return;
    case FileKind::access:
        refuse(path,
               "read: this is a database of the Access engine. Open it in the DTC Editor, which can copy its "
               "records.");
    case FileKind::empty:
        refuse(path, "read: the file is empty. Delete it, so that a new database can be made.");
    case FileKind::unreadable:
        refuse(path, "read: the file is missing or you may not read it.");
    case FileKind::other:
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
std::unique_ptr<DtcDatabase> DtcDatabase::connect(const std::string& path)
{
    return guarded(path, [&] {
        auto file = std::make_unique<SQLite::Database>(path, SQLite::OPEN_READWRITE, lockPatienceMs);
        return std::unique_ptr<DtcDatabase>(new DtcDatabase(path, std::move(file)));
    });
}

std::unique_ptr<DtcDatabase> DtcDatabase::openForReading(const std::string& path)
{
    checkKind(path);
    auto database = connect(path);
    if (database->number("SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' AND name = 'DTCset'") == 0)
        refuse(path, "read: it has no table \"DTCset\". Choose another file.");
    database->find({}); // whether it has the fields
    return database;
}

std::unique_ptr<DtcDatabase> DtcDatabase::open(const std::string& path)
{
    auto database = openForReading(path);
    if (database->number("SELECT COUNT(*) FROM sqlite_master WHERE type = 'index' AND name = 'DTCndx'") == 0)
        refuse(path, "edited: it has no index \"DTCndx\". Choose another file.");
    database->requireWritable();
    return database;
}

std::unique_ptr<DtcDatabase> DtcDatabase::create(const std::string& path,
                                                 const std::function<void(DtcDatabase&)>& fill)
{
    try {
        createFile(path);
    } catch (const FileError& error) {
        throw DatabaseError(error.what());
    }
    std::unique_ptr<DtcDatabase> database;
    try {
        database = connect(path);
        database->inOneStep([&] {
            database->execute(layout);
            if (fill)
                fill(*database);
        });
        return database;
    } catch (...) {
        database.reset();
        std::error_code ignored;
        std::filesystem::remove(utf8Path(path), ignored);
        std::filesystem::remove(utf8Path(path + "-journal"), ignored); // would be taken for a later file's
        throw;
    }
}

/// Only a change makes sure of that; it is undone.
void DtcDatabase::requireWritable()
{
    const std::string version = std::to_string(number("PRAGMA user_version"));
    execute("BEGIN IMMEDIATE");
    try {
        execute("PRAGMA user_version = " + version);
    } catch (...) {
        database_->tryExec("ROLLBACK");
        throw;
    }
    execute("ROLLBACK");
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
            found = {.key = query.getColumn(0).getInt64(),
                     .record = {.code = query.getColumn(1).getString(),
                                .description = query.getColumn(2).getString(),
                                .notes = query.getColumn(3).getString()}};
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

std::optional<DtcDatabase::Entry> DtcDatabase::read(std::int64_t key) { return entry(thisKey, key); }

/// @return how many records it concerned
template <typename... Values>
int DtcDatabase::change(const char* sql, const Values&... values)
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

DtcDatabase::Update DtcDatabase::update(std::int64_t key, const DtcRecord& record)
{
    if (change("UPDATE OR IGNORE DTCset SET Code = ?2, Description = ?3, Notes = ?4 WHERE rowid = ?1", key,
               record.code, record.description, record.notes) > 0)
        return Update::done;
    return read(key) ? Update::codeInUse : Update::gone;
}

void DtcDatabase::remove(std::int64_t key) { change("DELETE FROM DTCset WHERE rowid = ?1", key); }

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

bool isAccessDatabase(const std::string& path) { return kindOf(path) == FileKind::access; }

bool DtcDatabaseSource::available() const { return fileExists(path_); }

std::unique_ptr<CodeDescriptions> DtcDatabaseSource::open() const
{
    return DtcDatabase::openForReading(path_);
}

} // namespace zint
