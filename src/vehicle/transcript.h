#pragma once

#include "vehicle/busProtocol.h"
#include "vehicle/unitReading.h"

#include <string>
#include <string_view>
#include <vector>

/// What an adapter was sent and what came back, as text: to look at replies that a user has mailed.
///
/// transcriptText.h tells how one is written. The comment "# protocol 6" tells the protocol of what follows;
/// the prompt may be left out.
namespace zint {

struct TranscriptExchange {
    std::string written; ///< what was sent, as the transcript has it
    std::string command; ///< what was sent
    std::string reply;   ///< as it came; with the prompt if the transcript shows it
    BusProtocol protocol = BusProtocol::unknown;
};

/// The exchanges in their order. The protocol is what the answer to ATDPN tells, before that what a comment
/// tells, else what ATSP or ATTP has set.
std::vector<TranscriptExchange> readTranscript(std::string_view text);

/// Reads the exchanges of a transcript. Where it shows prompts, a reply without one is noPrompt unless it
/// holds a whole message or a text of the adapter that tells why there is none.
std::vector<ExchangeReading> replay(std::string_view transcript);

} // namespace zint
