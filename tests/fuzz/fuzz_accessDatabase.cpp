// Arbitrary bytes as a database of the Access engine: reading answers or throws DatabaseError.
// Input: "R" and the file; or another byte and changes to a sound file, each a 16-bit offset and a byte. An
// even first byte means the older generation.

#include "dtcdb/accessDatabase.h"
#include "dtcdb/dtcDatabase.h"
#include "fuzz/fuzzInput.h"
#include "support/accessFile.h"
#include "support/temporaryFolder.h"

namespace zint {
namespace {

std::string soundDatabase(AccessFile::Jet jet)
{
    AccessFile file{.jet = jet};
    for (int code = 100; code < 130; ++code)
        file.rows.push_back(
            {"P0" + std::to_string(code), "description of code " + std::to_string(code), std::nullopt});
    return file.bytes();
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    static const TemporaryFolder folder;
    static const std::string path = folder.path("dtc.mdb");
    static const std::string older = soundDatabase(AccessFile::Jet::three);
    static const std::string newer = soundDatabase(AccessFile::Jet::four);
    const bool raw = size > 0 && data[0] == 'R';
    std::string bytes = raw                            ? std::string(asText(data + 1, size - 1))
                        : size > 0 && data[0] % 2 == 0 ? older
                                                       : newer;
    for (std::size_t i = 1; !raw && i + 2 < size; i += 3)
        bytes[(data[i] * 256U + data[i + 1]) % bytes.size()] = static_cast<char>(data[i + 2]);
    TemporaryFolder::write(path, bytes);
    try {
        readAccessDatabase(path);
    } catch (const DatabaseError& error) {
        require(std::string(error.what()).find(path) != std::string::npos, "a refusal names the file");
    }
    return 0;
}
