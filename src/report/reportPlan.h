#pragma once

#include "report/vehicleFacts.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// What a report sends, command after command, and what it makes of the answers. It needs no link: whoever
/// has one asks for the next command, and hands the reply in.
///
/// Each thing is asked once. A request without an answer, or with a damaged one, is asked once more before
/// that counts; so is one that a control unit leaves out though it says that it has an answer. Where a unit
/// asks for patience, the adapter is told to wait longer before it is asked once more. Settings that the
/// adapter has lost are set anew. Only 04 is never sent twice.
class ReportPlan {
public:
    struct Scope {
        bool isQuick = false;     ///< without modes 05, 06, 09 and live values
        bool clearsFirst = false; ///< sends 04 before it reads
    };

    /// How far the clearing has come.
    enum class Clearing {
        notAsked, ///< by the scope
        notSent,
        unknown, ///< 04 was sent; no whole reply has come
        answered,
    };

    explicit ReportPlan(Scope scope);

    /// The command to be sent, without its end; nothing when all is read, or the report has failed.
    std::optional<std::string> next();

    /// @param answer to "ATI", with which the exchange has begun
    void takeName(std::string_view answer);

    /// @param reply to the last command, with what the adapter announced in front of it
    void take(std::string_view reply);

    const VehicleFacts& facts() const { return facts_; }
    VehicleFacts& facts() { return facts_; }

    /// Why no control unit could be asked; empty as long as nothing speaks against it.
    const std::string& failure() const { return failure_; }

    Clearing clearing() const { return clearing_; }

    /// What is being read, in words: "Live values".
    std::string_view topic() const;

    double progress() const; ///< percent; an estimate, for each answer tells what else there is to ask

private:
    struct Request {
        std::string command;
        bool isRepeated = false;
        std::set<std::string> answered = {}; ///< the units whose answers were whole at the first time
    };
    struct Stage;

    static const std::vector<Stage>& stages();

    void ask(std::string command) { pending_.push_back({std::move(command)}); }
    void askFirst(std::initializer_list<const char*> commands);
    void askOnceMore(bool isUnitBusy);
    void waitLongFor(int service);
    void waitAsUsual();
    void takeAdapterAnswer(std::string_view answer);
    void takeVehicleAnswer(std::string_view reply);
    void takeUnits(const ExchangeReading& reading, bool isLast);
    void takeUnit(const std::string& name, const UnitReading& unit);
    void noteFailures(const ExchangeReading& reading);
    void askFurtherList();
    bool hasBeenReset(std::string_view reply, const ExchangeReading& reading) const;
    bool wantsRepeat(const ExchangeReading& reading) const;
    std::vector<std::string> missingUnits(const ExchangeReading& reading) const;
    bool isAnyoneListing(std::uint8_t service, int item) const;
    std::vector<std::uint8_t> supported(std::uint8_t service) const;
    std::vector<std::string> oxygenSensors() const;

    void setUp();
    void setUpAgain();
    void connect();
    void clear();
    void readStatus();
    void readCodes();
    void findFreezeFrame();
    void listFreezeFrame();
    void readFreezeFrame();
    void listInformation();
    void readInformation();
    void readValues();
    void listTests();
    void readTests();
    void listOxygenTests();
    void readOxygenTests();

    Clearing clearing_;
    VehicleFacts facts_;
    std::deque<Request> pending_;
    Request current_;
    std::map<std::string, std::set<std::uint8_t>> sensorTests_; ///< of mode 05, by the sensor as it is asked
    std::optional<int> patientService_;                         ///< for whose answers the adapter waits long
    std::size_t stage_ = 0;                                     ///< the next one
    std::size_t done_ = 0;                                      ///< commands answered
    std::string failure_;
};

} // namespace zint
