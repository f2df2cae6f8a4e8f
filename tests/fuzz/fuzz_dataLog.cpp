// Arbitrary text as a data log: what can be read is written so that it reads the same again, and exports
// without a sample that belongs to no event.

#include "fuzz/fuzzInput.h"
#include "samples/dataExport.h"
#include "samples/dataLog.h"
#include "samples/dataLogReader.h"
#include "shared/fileError.h"

#include <optional>
#include <sstream>

namespace zint {
namespace {

std::optional<DataLog> read(const std::string& text)
{
    std::istringstream stream(text);
    try {
        return readLog(stream);
    } catch (const FileError&) {
        return std::nullopt;
    }
}

std::string written(const DataLog& log)
{
    std::ostringstream stream;
    writeLog(stream, log.design, log.samples, log.firstStart);
    return stream.str();
}

std::string exported(const DataLog& log)
{
    std::ostringstream stream;
    writeExport(stream, log.design, log.samples, log.firstStart,
                [](const std::string&) { require(false, "each sample belongs to an event"); });
    return stream.str();
}

} // namespace

void fuzz(std::string_view input)
{
    const auto first = read(std::string(input));
    if (!first)
        return;
    const std::string once = written(*first);
    const auto again = read(once);
    require(again && written(*again) == once, "what is written reads the same again");
    require(exported(*again) == exported(*first), "the order is found the same again");
}

} // namespace zint
