#pragma once

#include "sim/protocols.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// What a control unit makes of a request for several parameters on CAN.
enum class SeveralPids {
    taken,
    sorted, ///< likewise, and answers in the order of their numbers
    firstOnly,
    silent,
    refused,
};

/// The vehicle to simulate.
struct VehicleOptions {
    VehicleProtocol protocol = VehicleProtocol::iso9141;
    bool ignitionOn = true;                                          ///< off: the adapter finds no vehicle
    std::vector<std::string> storedCodes{"P0133", "P0301", "U0123"}; ///< until they are cleared
    std::vector<std::string> pendingCodes{"P0420"};                  ///< likewise
    std::vector<std::string> permanentCodes{"P0133"};                ///< clearing leaves them alone; CAN only
    std::string voltage; ///< as adapters tell it; empty: "13.1V", with the ignition off "12.3V"
    int units = 1;       ///< 2: an engine with more parameters, and a transmission
    std::vector<std::string> transmissionCodes{"P0741"}; ///< stored, until they are cleared
    bool diesel = false;                                 ///< compression ignition, with more parameters
    bool refusesClearing = false;

    /// The engine tells all parameters of the standard, whether `diesel` or not; the units know mode 22, and
    /// there is one for the body. On CAN only.
    bool allParameters = false;
    SeveralPids combined = SeveralPids::taken;             ///< by the engine
    SeveralPids transmissionCombined = SeveralPids::taken; ///< by the transmission
    bool fourBanks = false; ///< with `allParameters`: four banks, and full scales and ranges of its own

    /// The drive stands still at this time since its start: each value stays as it is. Nothing: it goes on.
    std::optional<std::chrono::microseconds> moment;

    /// All but live values is announced first, and comes so much later.
    std::optional<std::chrono::microseconds> pendingResponse;
    int foreignAnswerEvery = 0; ///< in front of each so manieth answer comes one to somebody else; 0: never
    int dropOutEvery = 0;       ///< at each so manieth request the last unit keeps silent; 0: never
};

/// An error of the adapter or of the bus that shows in a reply.
struct ReplyFault {
    enum class Place { insteadOfData, behindData };
    Place place = Place::insteadOfData;
    std::string text;
};

/// The adapter to simulate. As made it is well behaved and answers at once; each member is a habit or a fault
/// that real adapters show.
struct AdapterOptions {
    using Time = std::chrono::microseconds;

    Time latency{0};         ///< from the end of a request to its answer; 0: nothing takes time
    int bitsPerSecond = 0;   ///< of the serial line, ten bits a character; 0: takes no time
    bool mindsSpeed = false; ///< a port at another speed than `bitsPerSecond` hears noise, and so does it
    Time resetDuration{0};   ///< what arrives during a reset is lost
    Time defaultsDelay{0};   ///< until "ATD" is answered

    /// Before the first data after a reset comes "BUS INIT: ...OK" or "SEARCHING...".
    bool announcesConnection = false;
    bool lineFeeds = false;      ///< on at power-up and after a reset
    bool leadingLineEnd = false; ///< replies start with a line end
    bool singleLineEnd = false;  ///< no empty line before the prompt
    bool trailingBlank = true;   ///< behind the last byte of a line
    std::string afterPrompt;     ///< such as "\r\n"
    bool greetingPrompt = false; ///< a prompt stands in front of the greeting after a reset, too
    bool nulBytes = false;       ///< a byte 00 behind each carriage return
    Time promptDelay{0};         ///< from the end of a reply to its prompt
    std::string rubbish;         ///< sent before everything else; may hold NULs

    int pieceLength = 0; ///< output comes in pieces of so many characters; 0: in one piece
    Time pieceGap{0};    ///< between two pieces

    bool answersReset = true;         ///< otherwise nothing but the echo follows "ATZ"
    int garbleEvery = 0;              ///< in so many data replies, one has a wrong digit; 0: none
    std::map<int, ReplyFault> faults; ///< of the n-th request, counted from 1

    int longestRequest = 7;       ///< bytes; what is longer is answered with "?"
    bool mindsHeaderForm = false; ///< a header that does not fit the protocol is answered with "?"
    std::vector<std::string> refusedCommands; ///< without "AT"; are answered with "?"
    std::optional<std::uint8_t> padding;      ///< fills each CAN frame up to eight bytes
    bool showsPadding = false;                ///< behind short answers, too, where headers are off
    bool lengthDigit = false;                 ///< behind a CAN identifier, as after "ATD1"
    bool ownLengthByte = false;               ///< of KWP headers
    bool interleavesUnits = false;            ///< the lines of several control units come in turns

    // In each so manieth data reply; 0: never.
    int loseLineEvery = 0;  ///< counts replies of several lines
    int swapLinesEvery = 0; ///< likewise
    int doubleLineEvery = 0;
    int wrongCheckEvery = 0;

    // Both are counted from the opening of the port.
    std::optional<int> promptsUntilSilence;    ///< the reply behind so many prompts has none; nothing follows
    std::optional<int> repliesUntilDisconnect; ///< the device vanishes after so many

    /// What is sent while the port is closed waits there, as behind a network bridge.
    bool keepsUnread = false;
};

struct SimulationOptions {
    VehicleOptions vehicle;
    AdapterOptions adapter;

    /// A healthy adapter that takes its time: what a user gets who tries the program without a vehicle.
    static SimulationOptions realistic()
    {
        using std::chrono::milliseconds;
        SimulationOptions options;
        options.adapter.latency = milliseconds(50);
        options.adapter.resetDuration = milliseconds(800);
        options.adapter.announcesConnection = true;
        return options;
    }
};

} // namespace zint
