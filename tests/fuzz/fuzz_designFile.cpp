// Arbitrary text as a design file and as a draft of many events: what can be read is written so that it reads
// the same again.

#include "catalogue/designFile.h"
#include "fuzz/fuzzInput.h"
#include "shared/fileError.h"
#include "shared/runTimeError.h"

#include <limits>
#include <optional>
#include <sstream>

namespace zint {
namespace {

std::optional<Design> read(const std::string& text, std::size_t mostEvents)
{
    std::istringstream stream(text);
    try {
        return readDesign(stream, mostEvents);
    } catch (const FileError&) {
    } catch (const RunTimeError&) {
    }
    return std::nullopt;
}

} // namespace

void fuzz(std::string_view input)
{
    for (const std::size_t mostEvents : {Design::maxEvents, std::numeric_limits<std::size_t>::max()}) {
        const auto first = read(std::string(input), mostEvents);
        if (!first)
            continue;
        std::ostringstream written;
        writeDesign(written, *first);
        require(read(written.str(), mostEvents) == first, "what is written reads the same again");
    }
}

} // namespace zint
