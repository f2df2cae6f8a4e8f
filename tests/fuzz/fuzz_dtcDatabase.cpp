// Arbitrary bytes as a database file: look-ups answer or throw DatabaseError.
//
// Input: "R" and the file's bytes; or any other byte and changes to a sound database, each a 16-bit offset
// and a byte.

#include "dtcdb/dtcDatabase.h"
#include "fuzz/fuzzInput.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace zint {
namespace {

/// One file in the temporary folder, preferably in memory, and a sound database to start from.
class Files {
public:
    Files()
    {
        const std::filesystem::path memory = "/dev/shm";
        const auto folder = std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
        path_ = (folder / ("zint-fuzz-" + std::to_string(std::random_device{}()) + ".mdb")).string();
        SQLite::Database(path_, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
            .exec("PRAGMA page_size = 512;"
                  "CREATE TABLE DTCset (Code TEXT, Description TEXT, Notes TEXT);"
                  "CREATE UNIQUE INDEX DTCndx ON DTCset (Code COLLATE NOCASE);"
                  "WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i + 1 FROM n WHERE i < 299)"
                  "INSERT INTO DTCset SELECT 'P0' || i, 'description of code ' || i, '' FROM n;");
        std::ifstream file(path_, std::ios::binary);
        sound_.assign(std::istreambuf_iterator<char>(file), {});
    }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;
    ~Files()
    {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    const std::string& path() const { return path_; }
    const std::string& sound() const { return sound_; }

    void write(std::string_view bytes) const
    {
        std::ofstream(path_, std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

private:
    std::string path_;
    std::string sound_;
};

std::string changed(std::string bytes, FuzzInput input)
{
    while (!input.empty()) {
        const std::size_t offset = input.takeByte() * 256U + input.takeByte();
        bytes[offset % bytes.size()] = static_cast<char>(input.takeByte());
    }
    return bytes;
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    static const Files files;
    FuzzInput input(data, size);
    if (input.takeByte() == 'R')
        files.write(input.rest());
    else
        files.write(changed(files.sound(), input));

    try {
        const auto database = DtcDatabaseSource(files.path()).open();
        for (const std::string_view code : {"P0100", "p0299", "U0123"})
            database->describe(code);
    } catch (const DatabaseError& error) {
        require(std::string_view(error.what()).find(files.path()) != std::string_view::npos,
                "a refusal names the file");
    }
    return 0;
}
