// Arbitrary transcripts: each line that was sent gives an exchange, and its JSON is whole.

#include "fuzz/fuzzInput.h"
#include "vehicle/exchangeJson.h"
#include "vehicle/transcript.h"

void zint::fuzz(std::string_view input)
{
    const std::vector<ExchangeReading> readings = replay(input);
    require(readings.size() == readTranscript(input).size(), "an exchange for each command");
    require(exchangesJson(readings).ends_with("}\n"), "JSON ends");
    std::size_t codes = 0;
    for (const ExchangeReading& reading : readings) {
        for (const auto& [name, unit] : reading.units) {
            for (const auto& [kind, list] : unit.codes)
                codes += list.size();
        }
    }
    require(4 * codes <= input.size(), "each byte of a code is sent once");
}
