#pragma once

#include "dtcdb/codeDescriptions.h"
#include "dtcdb/dtcRecord.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

namespace zint {

/// A description database can't be used. The text tells the user which file, why, and what to do.
class DatabaseError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The database of code descriptions: an SQLite file with one table.
///
/// DTCset(Code, Description, Notes), all text; the unique index DTCndx on Code compares without regard to
/// case and gives the records their order. Other programs may change the file meanwhile: each call sees what
/// is there now, and waits a moment while another one writes.
///
/// What fails throws DatabaseError and leaves the file as it was.
class DtcDatabase final : public CodeDescriptions {
public:
    /// Field sizes in characters.
    static constexpr int codeSize = 5;
    static constexpr int descriptionSize = 100;
    static constexpr int notesSize = 255;

    /// Opens an existing database for look-ups. @throws DatabaseError when it is missing, damaged or of
    /// another kind
    static std::unique_ptr<DtcDatabase> openForReading(const std::string& path);

    /// Opens an existing database for all uses. @throws DatabaseError as openForReading(), and when it lacks
    /// the index or may not be written
    static std::unique_ptr<DtcDatabase> open(const std::string& path);

    /// Makes a database. Nothing is ever replaced, and nothing is left when it fails.
    /// @param fill adds the first records; what it throws is passed on
    /// @throws DatabaseError when it can't be made, and when there is something of that name
    static std::unique_ptr<DtcDatabase> create(const std::string& path,
                                               const std::function<void(DtcDatabase&)>& fill = {});

    ~DtcDatabase() override;

    const std::string& path() const { return path_; }

    std::optional<std::string> describe(std::string_view code) override;

    /// A record and what it is known by until it is removed.
    struct Entry {
        std::int64_t key;
        DtcRecord record;
    };

    std::int64_t count();
    std::optional<Entry> first();
    std::optional<Entry> last();
    std::optional<Entry> find(const std::string& code);
    std::optional<Entry> after(const std::string& code);  ///< the next one in order
    std::optional<Entry> before(const std::string& code); ///< the one before it in order
    std::optional<Entry> read(std::int64_t key);

    /// @return false when the code is in use; nothing is added then
    bool add(const DtcRecord& record);

    enum class Update { done, codeInUse, gone };

    /// Replaces all fields. In all cases but `done` nothing has changed; a record is gone when another
    /// program has removed it.
    Update update(std::int64_t key, const DtcRecord& record);

    /// Does nothing when there is no such record any more.
    void remove(std::int64_t key);

    /// What the work changes is kept as a whole, or not at all when it throws. Steps may contain others.
    void inOneStep(const std::function<void()>& work);

private:
    DtcDatabase(std::string path, std::unique_ptr<SQLite::Database> database);

    static std::unique_ptr<DtcDatabase> connect(const std::string& path);
    void requireWritable();
    void execute(const std::string& sql);
    SQLite::Statement& statement(const std::string& sql);
    std::int64_t number(const char* sql);
    template <typename... Values>
    std::optional<Entry> entry(const char* condition, const Values&... values);
    template <typename... Values>
    int change(const char* sql, const Values&... values);

    std::string path_;
    std::unique_ptr<SQLite::Database> database_;
    std::map<std::string, SQLite::Statement> statements_; ///< by their SQL
    std::int64_t count_ = 0;
    std::int64_t countedVersion_ = noVersion; ///< of the file

    static constexpr std::int64_t noVersion = -1;
};

/// The record with its description and notes as long as the table takes them.
DtcRecord cutToSize(const DtcRecord& record);

/// Whether a file is a database of the Access engine, which keeps its own form of the table.
bool isAccessDatabase(const std::string& path);

/// The descriptions in a database file.
class DtcDatabaseSource final : public CodeDescriptionSource {
public:
    explicit DtcDatabaseSource(std::string path) : path_(std::move(path)) {}

    bool available() const override;
    std::unique_ptr<CodeDescriptions> open() const override;

private:
    std::string path_;
};

} // namespace zint
