// Arbitrary bytes as a database file: look-ups answer or throw DatabaseError.
// Input: "R" and the file; or another byte and changes to a sound file, each a 16-bit offset and a byte.

#include "dtcdb/dtcDatabase.h"
#include "fuzz/fuzzInput.h"
#include "support/temporaryFolder.h"

#include <SQLiteCpp/SQLiteCpp.h>

namespace zint {
namespace {

std::string soundDatabase(const std::string& path)
{
    SQLite::Database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec("PRAGMA page_size = 512;"
              "CREATE TABLE DTCset (Code TEXT, Description TEXT, Notes TEXT);"
              "CREATE UNIQUE INDEX DTCndx ON DTCset (Code COLLATE NOCASE);"
              "WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i + 1 FROM n WHERE i < 299)"
              "INSERT INTO DTCset SELECT 'P0' || i, 'description of code ' || i, '' FROM n;");
    return contents(path);
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    static const TemporaryFolder folder;
    static const std::string path = folder.path("dtc.mdb");
    static const std::string sound = soundDatabase(path);
    const bool raw = size > 0 && data[0] == 'R';
    std::string bytes = raw ? std::string(asText(data + 1, size - 1)) : sound;
    for (std::size_t i = 1; !raw && i + 2 < size; i += 3)
        bytes[(data[i] * 256U + data[i + 1]) % bytes.size()] = static_cast<char>(data[i + 2]);
    TemporaryFolder::write(path, bytes);
    try {
        const auto database = DtcDatabase::openForReading(path);
        for (const std::string_view code : {"P0100", "p0299", "U0123"})
            database->describe(code);
    } catch (const DatabaseError& error) {
        require(std::string(error.what()).find(path) != std::string::npos, "a refusal names the file");
    }
    return 0;
}
