// Arbitrary text as a design file and as a draft: what can be read is written so that it reads the same
// again.

#include "catalogue/designFile.h"
#include "designer/designGrid.h"
#include "fuzz/fuzzInput.h"
#include "shared/fileError.h"
#include "shared/runTimeError.h"

#include <optional>
#include <sstream>

namespace zint {
namespace {

template <typename Result>
std::optional<Result> read(const std::string& text, Result (*reader)(std::istream&))
{
    std::istringstream stream(text);
    try {
        return reader(stream);
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

std::string written(const DesignDraft& draft)
{
    std::ostringstream stream;
    writeDraft(stream, draft.grid, draft.design);
    return stream.str();
}

/// What can be read reads the same again once it is written.
template <typename Result>
void checkRoundTrip(const std::string& text, Result (*reader)(std::istream&))
{
    const auto first = read(text, reader);
    if (!first)
        return;
    const std::string once = written(*first);
    const auto again = read(once, reader);
    require(again.has_value(), "what is written can be read");
    require(written(*again) == once, "what is written reads the same again");
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    const std::string text(asText(data, size));
    checkRoundTrip<Design>(text, &readDesign);
    checkRoundTrip<DesignDraft>(text, &readDraft);
    return 0;
}
