// Arbitrary transcripts: each line that was sent gives an exchange, and its JSON is whole; a recording
// answers; what was received is written so that it is read as the same bytes.

#include "fuzz/fuzzInput.h"
#include "link/recording.h"
#include "link/transcriptText.h"
#include "vehicle/exchangeJson.h"
#include "vehicle/transcript.h"
#include "vehicle/transcriptMask.h"

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

    std::string lines;
    writeReceived(lines, input);
    std::string bytes;
    readTranscriptLines(lines, [&bytes](const TranscriptLine& line) { bytes += line.bytes; });
    require(bytes == input, "what was received is read again");
    require(readTranscript(withoutIdentity(input)).size() == readings.size(), "no command is left out");
    Recording recording(input);
    recording.open();
    require(!recording.answer("0100\r").empty() || !readings.empty(), "an answer to what was never sent");
}
