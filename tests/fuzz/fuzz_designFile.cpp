// Arbitrary design files: a file that can be read is written so that it reads the same again.

#include "designer/designFile.h"
#include "fuzz/fuzzInput.h"
#include "shared/fileError.h"
#include "shared/runTimeError.h"

#include <optional>
#include <sstream>

namespace zint {
namespace {

std::optional<Design> read(const std::string& text)
{
    std::istringstream stream(text);
    try {
        return readDesign(stream);
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

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    const auto design = read(std::string(asText(data, size)));
    if (!design)
        return 0;
    require(design->polledCount() <= design->eventCount(), "polled events are events");
    const std::string text = written(*design);
    const auto again = read(text);
    require(again.has_value(), "a written design can be read");
    require(written(*again) == text, "a written design reads the same again");
    return 0;
}
