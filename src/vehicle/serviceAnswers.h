#pragma once

#include "vehicle/unitReading.h"

#include <cstddef>
#include <functional>

/// The readers of the services' answers. Each adds what an answer tells to the reading of its control unit,
/// and marks the reading as incomplete where the answer is too short for what it announces.
namespace zint {

enum class BusKind { can, older, unknown };

/// One answer of a control unit, and what its reading depends on.
struct ServiceAnswer {
    std::uint8_t service = 0; ///< as it is asked: 01 for an answer 41
    BytesView data;           ///< behind the service
    BytesView asked;          ///< the request behind its service; empty: not known
    BusKind bus = BusKind::unknown;
    const UnitReading* known = nullptr; ///< what the unit told before; null: nothing
};

void readCodes(const ServiceAnswer& answer, UnitReading& reading);  ///< 03, 07, 0A
void readValues(const ServiceAnswer& answer, UnitReading& reading); ///< 01
/// Calls a function with each parameter that an answer of mode 01 holds, and its data: all that there is when
/// it was asked alone, otherwise as many bytes as the standard says.
void forEachParameter(const ServiceAnswer& answer,
                      const std::function<void(std::uint8_t pid, BytesView data)>& take);

/// What a unit has told that changes the reading of other parameters. @param known null: nothing
ParameterContext contextOf(const UnitReading* known);

void readFreezeFrame(const ServiceAnswer& answer, UnitReading& reading);    ///< 02
void readSensorTests(const ServiceAnswer& answer, UnitReading& reading);    ///< 05
void readMonitorResults(const ServiceAnswer& answer, UnitReading& reading); ///< 06
void readVehicleInfo(const ServiceAnswer& answer, UnitReading& reading);    ///< 09

/// Adds the ids that a bitmap names. @param base the id that was asked. @param bitmap four bytes
void addSupported(std::vector<std::uint8_t>& ids, std::uint8_t base, BytesView bitmap);

inline constexpr std::size_t bitmapLength = 4;

/// Whether an id asks for a bitmap: 00, 20 ... E0.
constexpr bool asksForBitmap(std::uint8_t id) { return id % 0x20 == 0; }

/// Reads an answer that consists of ids and their bitmaps.
/// @param fillers how many bytes stand between an id and its bitmap
void readBitmaps(const ServiceAnswer& answer, std::size_t fillers, UnitReading& reading);

/// What an older bus sends of mode 09 in numbered messages, as single ones in the form of CAN. Other messages
/// stay as they are. A line without a header that has come twice is left out.
/// @param bus that the reply as a whole shows
std::vector<UnitMessage> joinNumbered(std::vector<UnitMessage> messages, BusKind bus);

/// The kind of bus that a message has come from. @param bus that the reply as a whole shows
BusKind busOf(const UnitMessage& message, BusKind bus);

} // namespace zint
