#include "dtcdb/dtcDatabase.h"

#include "shared/module1.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <array>
#include <fstream>
#include <utility>

namespace zint {
namespace {

constexpr int lockPatienceMs = 2000;

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

std::string inQuotes(const std::string& path) { return "\"" + path + "\""; }

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw DatabaseError("The code descriptions in " + inQuotes(path) + " can't be read: " + why);
}

void checkKind(const std::string& path)
{
    switch (kindOf(path)) {
    case FileKind::sqlite:
        return;
    case FileKind::access:
        refuse(path, "this is a database of the Access engine, which this program does not read.");
    case FileKind::empty:
        refuse(path, "the file is empty. Delete it, so that a new database can be made.");
    case FileKind::unreadable:
        refuse(path, "the file is missing or you may not read it.");
    case FileKind::other:
        refuse(path, "the file is no database of this program. Choose another file.");
    }
}

[[noreturn]] void refuse(const std::string& path, const SQLite::Exception& error)
{
    switch (error.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        refuse(path, "another program is writing to it. Try again when it has finished.");
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        refuse(path, std::string("the file is damaged (") + error.what() + "). Restore it from a copy.");
    default:
        refuse(path, std::string(error.what()) + ".");
    }
}

} // namespace

DtcDatabase::DtcDatabase(std::string path, std::unique_ptr<SQLite::Database> database)
    : path_(std::move(path)), database_(std::move(database))
{
    if (!database_->tableExists("DTCset"))
        refuse(path_, "it has no table \"DTCset\". Choose another file.");
    find_ = std::make_unique<SQLite::Statement>(
        *database_, "SELECT Description FROM DTCset WHERE Code = ?1 COLLATE NOCASE");
}

DtcDatabase::~DtcDatabase() = default;

std::unique_ptr<DtcDatabase> DtcDatabase::openForReading(const std::string& path)
{
    checkKind(path);
    try {
        auto database = std::make_unique<SQLite::Database>(path, SQLite::OPEN_READONLY, lockPatienceMs);
        return std::unique_ptr<DtcDatabase>(new DtcDatabase(path, std::move(database)));
    } catch (const SQLite::Exception& error) {
        refuse(path, error);
    }
}

std::optional<std::string> DtcDatabase::describe(std::string_view code)
{
    try {
        find_->reset();
        find_->bind(1, std::string(code));
        if (!find_->executeStep())
            return std::nullopt;
        return find_->getColumn(0).getString();
    } catch (const SQLite::Exception& error) {
        refuse(path_, error);
    }
}

bool DtcDatabaseSource::available() const { return fileExists(path_); }

std::unique_ptr<CodeDescriptions> DtcDatabaseSource::open() const
{
    return DtcDatabase::openForReading(path_);
}

} // namespace zint
