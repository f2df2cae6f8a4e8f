#pragma once

#include <string>
#include <string_view>

namespace zint {

/// What can be wrong with a connection, as far as it can be seen from here.
enum class Observation {
    nothingConnected,
    notAssigned,
    portMissing,
    takenByBraille,
    driverMissing,
    bluetoothUnbound,
    notInGroup,
    loginNeeded,
    ownerOnly,
    sandbox,
    modemManager,
    incomingPort,
    inUse,
    locked,
    noSerialPort,
    driverRefusesChip,
    partnerAway,
    partnerRefuses,
    networkRefused,
    networkSilent,
    networkUnknown,
    wrongAssignment,
    noRecording,
    openingFailed,
    networkMute,
    silence,
    noise,
    noAdapter,
    wrongSpeed,
    oneBehind,
    lostMeanwhile,
    stoppedAnswering,
    nameless,
    settingsRefused,
    echoStays,
    saysYesToAll,
    headersNotShown,
    noVoltage,
    absurdVoltage,
    voltageRefused,
    ignitionOff,
    noVehicle,
    noData,
    busInitError,
    fixedProtocol,
    canError,
    lowVoltageReset,
    keepsStopping,
    bufferFull,
    busError,
    damagedData,
    requestRefused,
    endlessSearch,
    unreadableAnswer,
    slowBus,
};

/// Something that was seen, and a word of what it concerns: a device, a program, a speed.
struct Finding {
    Observation what;
    std::string detail = {};

    bool operator==(const Finding&) const = default;
};

/// The word that programs know a finding by: "ignitionOff".
std::string_view nameOf(Observation what);

/// Whether nothing will work until it is mended; else it is a remark.
bool blocks(Observation what);

/// What it comes from most likely, in one sentence.
std::string causeOf(const Finding& finding);

/// What to do first, in one sentence or two.
std::string firstStepFor(const Finding& finding);

} // namespace zint
