#pragma once

#include "dtcdb/codeDescriptions.h"
#include "dtcdb/dtcRecord.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

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

    /// How long a call waits while another program writes.
    static constexpr std::chrono::milliseconds usualPatience{2000};

    /// Opens an existing database for look-ups. @throws DatabaseError when it is missing, damaged or of
    /// another kind
    static std::unique_ptr<DtcDatabase> openForReading(const std::string& path,
                                                       std::chrono::milliseconds patience = usualPatience);

    /// Opens an existing database for all uses, or where it may not be written for reading: see isReadOnly().
    /// @throws DatabaseError as openForReading(), and when the index can't tell records apart
    static std::unique_ptr<DtcDatabase> open(const std::string& path,
                                             std::chrono::milliseconds patience = usualPatience);

    /// Makes a database. It gets its name when it is whole: neither a failure nor a kill leaves a part under
    /// it. What has the name already stays, unless it is an empty file.
    /// @param fill adds the first records; what it throws is passed on
    /// @throws DatabaseError when it can't be made, and when there is something of that name
    static std::unique_ptr<DtcDatabase> create(const std::string& path,
                                               const std::function<void(DtcDatabase&)>& fill = {});

    /// Makes a database that is in memory only. @param fill as for create()
    static std::unique_ptr<DtcDatabase> createInMemory(const std::function<void(DtcDatabase&)>& fill);

    ~DtcDatabase() override;

    const std::string& path() const { return path_; }
    bool isReadOnly() const { return isReadOnly_; }

    std::optional<std::string> describe(std::string_view code) override;

    /// A record as it was read. The table may give its key to another record once it is gone.
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
    std::optional<Entry> read(const Entry& known);        ///< as it is now; nothing when it is gone

    /// The records whose descriptions hold all of the words or parts of words, in order; capitals and small
    /// letters are alike. @param most of them
    std::vector<DtcRecord> containing(const std::vector<std::string>& words, std::size_t most);

    /// @return false when the code is in use; nothing is added then
    bool add(const DtcRecord& record);

    enum class Update { done, codeInUse, gone, changed };

    /// Replaces all fields of a record that is as it was read. In all cases but `done` nothing has changed;
    /// another program has removed a record that is gone, or changed it.
    Update update(const Entry& known, const DtcRecord& record);

    /// @return false when the record is gone already
    bool remove(const Entry& known);

    /// What the work changes is kept as a whole, or not at all when it throws. Steps may contain others.
    void inOneStep(const std::function<void()>& work);

private:
    DtcDatabase(std::string path, std::unique_ptr<SQLite::Database> database);

    static std::unique_ptr<DtcDatabase> connect(const std::string& path, std::chrono::milliseconds patience);
    void makeTable(const std::function<void(DtcDatabase&)>& fill);
    void requireTable();
    void requireIndex();
    bool mayWrite();
    void execute(const std::string& sql);
    SQLite::Statement& statement(const std::string& sql);
    std::int64_t number(const char* sql);
    template <typename... Values>
    std::optional<Entry> entry(const char* condition, const Values&... values);
    template <typename... Values>
    int change(const std::string& sql, const Values&... values);

    std::string path_;
    std::unique_ptr<SQLite::Database> database_;
    std::map<std::string, SQLite::Statement> statements_; ///< by their SQL
    bool isReadOnly_ = false;
    std::int64_t count_ = 0;
    std::int64_t countedVersion_ = noVersion; ///< of the file

    static constexpr std::int64_t noVersion = -1;
};

/// The record with its description and notes as long as the table takes them.
DtcRecord cutToSize(const DtcRecord& record);

} // namespace zint
