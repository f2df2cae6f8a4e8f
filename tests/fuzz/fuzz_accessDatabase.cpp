// Arbitrary bytes as a database of the Access engine: reading answers or throws DatabaseError. Input: the
// file.

#include "dtcdb/accessDatabase.h"
#include "dtcdb/dtcDatabase.h"
#include "fuzz/fuzzInput.h"
#include "support/temporaryFolder.h"

void zint::fuzz(std::string_view input)
{
    static const TemporaryFolder folder;
    static const std::string path = folder.path("dtc.mdb");
    TemporaryFolder::write(path, input);
    try {
        readAccessDatabase(path);
    } catch (const DatabaseError& error) {
        require(std::string(error.what()).find(path) != std::string::npos, "a refusal names the file");
    }
}
