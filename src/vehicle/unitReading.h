#pragma once

#include "vehicle/parameters.h"
#include "vehicle/vehicleReply.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What control units tell, as facts (SAE J1979). One exchange tells a part of them; put together, they are a
/// report.
namespace zint {

enum class CodeKind { stored, pending, permanent };

/// In their order, as texts and JSON name them.
inline constexpr std::array codeKindNames = {"stored", "pending", "permanent"};

enum class MonitorState { unsupported, incomplete, complete };

/// In their order, as JSON names them.
inline constexpr std::array monitorStateNames = {"unsupported", "incomplete", "complete"};

/// The monitors of a control unit: names such as "misfire", "catalyst", in the order of their bits.
struct Readiness {
    bool isCompressionIgnition = false;
    std::vector<std::pair<std::string, MonitorState>> monitors;

    /// Nothing for a monitor that it does not tell of.
    std::optional<MonitorState> stateOf(const std::string& monitor) const;

    bool operator==(const Readiness&) const = default;
};

struct FreezeFrame {
    int frame = 0;
    std::string code; ///< that stored it; empty: there is no freeze frame
    std::map<std::uint8_t, std::vector<ParameterValue>> values;
    bool isCodeTold = false; ///< whether the unit was asked for the code

    bool operator==(const FreezeFrame&) const = default;
};

/// A result of mode 05 or 06, in its unit.
struct TestResult {
    int mid = -1; ///< monitor (CAN) or component (older buses); the sensor's bit in mode 05
    int tid = 0;
    std::string name; ///< of the monitor and the test; empty where the maker knows alone
    double value = 0;
    std::optional<double> min; ///< nothing: no limit
    std::optional<double> max;
    std::string unit;
    std::optional<bool> passed; ///< nothing: not run since clearing

    bool operator==(const TestResult&) const = default;
};

/// A counter of the in-use performance: "CATCOMP1" and its value.
using PerformanceCounter = std::pair<std::string, int>;

/// What a control unit has told. A member without a value, or empty, was not told.
struct UnitReading {
    std::map<CodeKind, std::vector<std::string>> codes; ///< an empty list: it says that it has none
    std::optional<bool> mil;
    std::optional<int> dtcCount;
    std::optional<Readiness> readiness;      ///< since clearing, parameter 01
    std::optional<Readiness> cycleReadiness; ///< of this drive cycle, parameter 41
    std::map<std::uint8_t, std::vector<std::uint8_t>>
        supported; ///< by service: its parameters, tests, infotypes
    std::map<std::uint8_t, std::vector<ParameterValue>> values; ///< mode 01
    std::map<std::uint8_t, Bytes> rawValues;                    ///< their bytes
    std::optional<FreezeFrame> freezeFrame;
    std::optional<std::string> vin;
    std::vector<std::string> calibrationIds;
    std::vector<std::string> cvns; ///< eight hexadecimal digits each
    std::optional<std::string> ecuName;
    std::map<std::uint8_t, std::string> otherInfo; ///< further texts of mode 09, by infotype
    std::vector<PerformanceCounter> counters;
    std::vector<TestResult> tests;
    bool cleared = false;                ///< it has obeyed 04
    std::optional<std::uint8_t> refusal; ///< the code behind 7F, without 78
    bool isIncomplete = false;           ///< a part of its answer is missing or damaged
    bool isBusy = false;                 ///< incomplete, for it has only asked for patience (7F xx 78)

    /// Whether it lists a parameter, a test or an infotype among what it supports of a service.
    bool supports(std::uint8_t service, int item) const;

    /// Whether its oxygen sensors are numbered over four banks: it lists parameter 1D, and not 13.
    bool hasFourBanks() const { return supports(0x01, 0x1D) && !supports(0x01, 0x13); }
};

/// By the names of the control units, in the order of their first answers.
using UnitReadings = std::vector<std::pair<std::string, UnitReading>>;

/// The reading of a unit; added when there is none yet.
UnitReading& readingOf(UnitReadings& units, const std::string& name);

/// The same without adding one. @return null when there is none
const UnitReading* findReading(const UnitReadings& units, const std::string& name);

/// What one exchange has told.
struct ExchangeReading {
    std::string command;
    ReplyError error = ReplyError::none;
    UnitReadings units;
};

/// Reads an exchange. @param request as sent. @param known what earlier ones have told of the same vehicle
ExchangeReading readExchange(std::string_view request, std::string_view reply, BusProtocol protocol,
                             const UnitReadings& known = {});

/// Adds what an exchange has told to what is known of a unit. Refusals and missing parts concern the exchange
/// alone and are left out.
void merge(UnitReading& into, const UnitReading& more);

} // namespace zint
