#pragma once

#include "dtcdb/codeDescriptions.h"

#include <memory>
#include <stdexcept>
#include <string>

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
/// case and gives the records their order.
class DtcDatabase final : public CodeDescriptions {
public:
    /// Field sizes in characters.
    static constexpr int codeSize = 5;
    static constexpr int descriptionSize = 100;
    static constexpr int notesSize = 255;

    /// Opens an existing database for reading. @throws DatabaseError when it is missing, damaged or of
    /// another kind
    static std::unique_ptr<DtcDatabase> openForReading(const std::string& path);

    ~DtcDatabase() override;

    std::optional<std::string> describe(std::string_view code) override;

private:
    DtcDatabase(std::string path, std::unique_ptr<SQLite::Database> database);

    std::string path_;
    std::unique_ptr<SQLite::Database> database_;
    std::unique_ptr<SQLite::Statement> find_;
};

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
