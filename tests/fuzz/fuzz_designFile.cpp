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

std::string written(const Design& design)
{
    std::ostringstream stream;
    writeDesign(stream, design);
    return stream.str();
}

/// What can be read reads the same again once it is written.
void checkRoundTrip(const std::string& text, std::size_t mostEvents)
{
    const auto first = read(text, mostEvents);
    if (!first)
        return;
    const auto again = read(written(*first), mostEvents);
    require(again.has_value(), "what is written can be read");
    require(again == first, "what is written reads the same again");
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    const std::string text(asText(data, size));
    checkRoundTrip(text, Design::maxEvents);
    checkRoundTrip(text, std::numeric_limits<std::size_t>::max());
    return 0;
}
