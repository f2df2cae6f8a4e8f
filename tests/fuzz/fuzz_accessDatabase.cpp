// Arbitrary bytes as a database of the Access engine: reading answers or throws DatabaseError. Input: the
// file.

#include "dtcdb/accessDatabase.h"
#include "dtcdb/dtcDatabase.h"
#include "fuzz/fuzzInput.h"
#include "support/temporaryFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    static const TemporaryFolder folder;
    static const std::string path = folder.path("dtc.mdb");
    TemporaryFolder::write(path, asText(data, size));
    try {
        readAccessDatabase(path);
    } catch (const DatabaseError& error) {
        require(std::string(error.what()).find(path) != std::string::npos, "a refusal names the file");
    }
    return 0;
}
