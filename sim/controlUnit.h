#pragma once

#include "sim/codeMessages.h"
#include "sim/message.h"
#include "sim/pidTable.h"
#include "sim/protocols.h"
#include "sim/simulationOptions.h"
#include "sim/unitKind.h"

#include <chrono>
#include <cstdint>

namespace zint {

/// What a control unit has found wrong.
struct UnitCodes {
    TroubleCodes stored;
    TroubleCodes pending;
    TroubleCodes permanent; ///< which clearing leaves alone
};

/// Whom a request is meant for.
enum class Addressee { another, all, thisOne };

/// What a control unit is like, beside its kind.
struct UnitHabits {
    bool refusesClearing = false;
    bool tellsMakerValues = false; ///< it knows mode 22
    SeveralPids combined = SeveralPids::taken;
};

/// One control unit on the bus. What it answers depends on the drive; what is cleared stays so.
class ControlUnit {
public:
    ControlUnit(UnitKind kind, const ProtocolTraits& protocol, UnitCodes codes, UnitHabits habits);

    UnitAddress address() const { return unitTraits(kind_).address; }

    /// Whom a request with this header (its last 24 bits) is meant for.
    Addressee addressee(std::uint32_t header) const;
    bool hears(std::uint32_t header) const { return addressee(header) != Addressee::another; }

    /// The messages that answer a request; none, or a refusal, for what the unit does not have.
    /// @param request not empty
    /// @param header which it hears
    /// @param driven since the first request
    Messages answer(std::uint32_t header, MessageView request, std::chrono::microseconds driven);

private:
    struct Service;

    Messages liveData(MessageView request);
    Messages freezeFrame(MessageView request);
    Messages storedCodes(MessageView request);
    Messages clearCodes(MessageView request);
    Messages sensorTests(MessageView request);
    Messages monitorResults(MessageView request);
    Messages pendingCodes(MessageView request);
    Messages vehicleInformation(MessageView request);
    Messages permanentCodes(MessageView request);
    Messages makerValue(MessageView request);

    Messages makerRefusal(std::uint8_t reason) const;
    Messages unsupported(std::uint8_t mode, std::uint8_t reason) const;
    bool appendLiveValue(Message& message, std::uint8_t pid) const;
    std::uint32_t monitorStatus() const;
    EngineData engineData(std::chrono::microseconds moment) const;

    UnitKind kind_;
    const ProtocolTraits* protocol_;
    UnitCodes codes_;
    UnitHabits habits_;
    bool cleared_ = false;
    std::chrono::microseconds clearedAt_;
    std::chrono::microseconds driven_{0};
    Addressee addressee_ = Addressee::all; // of the request that it answers
};

} // namespace zint
