// Arbitrary bytes as a database file: look-ups answer or throw DatabaseError.
// Input: "R" and the file; or another byte and changes to a sound file, each a 16-bit offset and a byte.

#include "dtcdb/dtcDatabase.h"
#include "fuzz/fuzzInput.h"
#include "support/temporaryFolder.h"

void zint::fuzz(std::string_view input)
{
    static const TemporaryFolder folder;
    static const std::string path = folder.path("dtc.mdb");
    static const std::string sound = [] {
        DtcDatabase::create(path, [](DtcDatabase& database) {
            for (int code = 100; code < 300; ++code)
                database.add({"P0" + std::to_string(code), "description of " + std::to_string(code), ""});
        });
        return contents(path);
    }();
    const bool raw = input.starts_with('R');
    std::string bytes = raw ? std::string(input.substr(1)) : sound;
    for (std::size_t i = 1; !raw && i + 2 < input.size(); i += 3)
        bytes[(byteAt(input, i) * 256U + byteAt(input, i + 1)) % bytes.size()] = input[i + 2];
    TemporaryFolder::write(path, bytes);
    try {
        const auto database = DtcDatabase::open(path);
        for (const std::string_view code : {"P0100", "p0299", "U0123"})
            database->describe(code);
    } catch (const DatabaseError& error) {
        require(std::string(error.what()).find(path) != std::string::npos, "a refusal names the file");
    }
}
