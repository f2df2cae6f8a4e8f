#include "dtcdb/accessDatabase.h"

#include "dtcdb/databaseKind.h"
#include "dtcdb/dtcDatabase.h"
#include "shared/module1.h"

// mdbtools.h includes glib.h as C, which glib.h can't bear; so it comes first.
// clang-format off
#include <glib.h>
#include <mdbtools.h>
// clang-format on

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <optional>
#include <string_view>

namespace zint {
namespace {

constexpr std::size_t largestFile = std::size_t{64} * 1024 * 1024;
constexpr std::size_t jet3Page = 2048;
constexpr std::size_t jet4Page = 4096;
constexpr std::size_t versionOffset = 0x14;
constexpr unsigned long catalogPage = 2; // the same in every file
constexpr unsigned long pageBits = 0x00FFFFFF;
constexpr int typeBits = 0x7F;

constexpr std::array<std::string_view, 3> catalogFields{"Id", "Name", "Type"};
constexpr std::array<std::string_view, 3> recordFields{"Code", "Description", "Notes"};

struct CloseDatabase {
    void operator()(MdbHandle* database) const { mdb_close(database); }
};
struct FreeTable {
    void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};
using Database = std::unique_ptr<MdbHandle, CloseDatabase>;

[[noreturn]] void refuseFile(const std::string& path, const std::string& why)
{
    throw DatabaseError("The code descriptions in \"" + path + "\" can't be read: " + why);
}

[[noreturn]] void refuseDamaged(const std::string& path)
{
    refuseFile(path,
               "the file is damaged or encrypted. Restore it from a copy, or let the program that made it "
               "repair it.");
}

std::string databaseBytes(const std::string& path)
{
    std::ifstream file;
    if (fileExists(path)) // a folder would open, and hold no bytes
        file.open(utf8Path(path), std::ios::binary | std::ios::ate);
    const std::streamoff size = file.is_open() ? static_cast<std::streamoff>(file.tellg()) : -1;
    if (size < 0)
        refuseFile(path, "the file is missing or you may not read it.");
    if (static_cast<std::size_t>(size) > largestFile)
        refuseFile(path,
                   "the file is larger than 64 MB, too large for code descriptions. Choose another file.");
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.seekg(0);
    if (!file.read(bytes.data(), size))
        refuseFile(path, "the file can't be read to its end. Try again, or restore it from a copy.");
    return bytes;
}

/// The library prints about files that it can't open; they are told apart before it sees them.
void checkHeader(const std::string& path, std::string_view file)
{
    if (databaseKind(path) != DatabaseKind::access)
        refuseFile(path, "this is no database of the Access engine. Choose another file.");
    const int version = file.size() > versionOffset ? static_cast<unsigned char>(file[versionOffset]) : 0;
    if (version > MDB_VER_ACCDB_2019)
        refuseFile(path,
                   "it was made by a newer Access engine than this program knows. Save it as \".mdb\" with "
                   "the program that made it.");
    if (!file.starts_with('\0') || file.size() <= catalogPage * (version == 0 ? jet3Page : jet4Page))
        refuseDamaged(path);
}

/// A table of an open database, with three of its fields.
class TableReader {
public:
    /// @param page where the table's definition begins
    TableReader(MdbHandle& database, unsigned long page) : database_(database)
    {
        entry_.mdb = &database;
        entry_.object_type = MDB_TABLE;
        entry_.table_pg = page;
        table_.reset(mdb_read_table(&entry_));
        // The library walks this map without a look at its size, past the end of its memory in a damaged
        // file.
        const bool sound = table_ && table_->usage_map != nullptr && table_->map_sz >= smallestMap &&
                           table_->usage_map[0] <= lastMapKind && mdb_read_columns(table_.get()) != nullptr;
        if (!sound)
            table_.reset();
    }

    TableReader(const TableReader&) = delete; // the table points to its entry
    TableReader& operator=(const TableReader&) = delete;
    ~TableReader() = default;

    bool sound() const { return table_ != nullptr; }
    unsigned int rowCount() const { return table_->num_rows; }

    /// @return false when the table has no such field of one of the types
    bool bind(std::size_t place, std::string_view name, const std::vector<int>& types)
    {
        for (guint i = 0; i < table_->columns->len; ++i) {
            const auto* column = static_cast<const MdbColumn*>(g_ptr_array_index(table_->columns, i));
            if (upperCase(column->name) != upperCase(name) ||
                std::ranges::count(types, column->col_type) == 0)
                continue;
            values_.at(place).resize(database_.bind_size);
            return mdb_bind_column(table_.get(), static_cast<int>(i) + 1, values_.at(place).data(), nullptr) >
                   0;
        }
        return false;
    }

    void rewind() { mdb_rewind_table(table_.get()); }

    bool next()
    {
        for (std::string& value : values_)
            value.front() = '\0';
        return mdb_fetch_row(table_.get()) != 0;
    }

    std::string value(std::size_t place) const
    {
        const std::string& buffer = values_.at(place);
        return buffer.substr(0, buffer.find('\0'));
    }

    int number(std::size_t place) const
    {
        const std::string text = value(place);
        int result = 0;
        std::from_chars(text.data(), text.data() + text.size(), result);
        return result;
    }

private:
    static constexpr std::size_t smallestMap = 5;
    static constexpr unsigned char lastMapKind = 1;

    MdbHandle& database_;
    MdbCatalogEntry entry_{};
    std::unique_ptr<MdbTableDef, FreeTable> table_;
    std::array<std::string, 3> values_; // what the library writes a row's fields into, ended by a zero
};

/// Where the definition of DTCset is.
unsigned long findTable(const std::string& path, MdbHandle& database)
{
    TableReader catalog(database, catalogPage);
    if (!catalog.sound() || !catalog.bind(0, catalogFields[0], {MDB_LONGINT}) ||
        !catalog.bind(1, catalogFields[1], {MDB_TEXT}) || !catalog.bind(2, catalogFields[2], {MDB_INT}))
        refuseDamaged(path);
    unsigned int objects = 0;
    for (catalog.rewind(); catalog.next(); ++objects)
        if ((catalog.number(2) & typeBits) == MDB_TABLE && upperCase(catalog.value(1)) == "DTCSET")
            return static_cast<unsigned long>(catalog.number(0)) & pageBits;
    if (objects < catalog.rowCount())
        refuseDamaged(path);
    refuseFile(path, "it has no table \"DTCset\". Choose another file.");
}

} // namespace

bool canReadAccessDatabases() { return true; }

std::vector<DtcRecord> readAccessDatabase(const std::string& path)
{
    std::string file = databaseBytes(path);
    checkHeader(path, file);
    unsetenv("MDBICONV"); // the library would deliver texts in the encoding that it names
    const Database database(mdb_open_buffer(file.data(), file.size(), MDB_NOFLAGS));
    if (!database)
        refuseDamaged(path);
    TableReader table(*database, findTable(path, *database));
    if (!table.sound())
        refuseDamaged(path);
    for (std::size_t i = 0; i < recordFields.size(); ++i)
        if (!table.bind(i, recordFields.at(i), {MDB_TEXT, MDB_MEMO}))
            refuseFile(path, R"(its table "DTCset" has no text field ")" + std::string(recordFields.at(i)) +
                                 "\". Choose another file.");

    // The library passes over what it can't read, so the records are counted.
    std::vector<DtcRecord> records;
    std::size_t size = 0;
    const std::size_t largestSize = 4 * file.size(); // a byte of the file becomes three at most in UTF-8
    for (table.rewind(); records.size() <= table.rowCount() && size <= largestSize && table.next();) {
        records.push_back({table.value(0), table.value(1), table.value(2)});
        size += records.back().code.size() + records.back().description.size() + records.back().notes.size();
    }
    if (records.size() != table.rowCount())
        refuseFile(path,
                   "the file is damaged: of its " + std::to_string(table.rowCount()) + " records, " +
                       std::to_string(records.size()) +
                       " were found. Restore it from a copy, or let the program that made it repair it.");
    return records;
}

} // namespace zint
