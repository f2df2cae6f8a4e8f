#pragma once

#include "report/vehicleFacts.h"
#include "shared/clock.h"

#include <string>
#include <utility>

namespace zint {

/// The reports of each vehicle in the user's data folder, in JSON: the last 50 of a vehicle. Only their owner
/// may read them, for they hold the VIN.
class KeptReports {
public:
    /// @param userDataFolder gets a folder for them when it is needed
    /// @param nameText makes a file's name of a time
    KeptReports(const std::string& userDataFolder, DateText nameText)
        : folder_(userDataFolder + "/reports"), nameText_(std::move(nameText))
    {
    }

    /// Where the reports of this vehicle are, or would be.
    std::string folderOf(const VehicleFacts& facts) const;

    /// @param json of the report, see reportJson()
    /// @return its path. @throws FileError when it can't be written
    std::string keep(const VehicleFacts& facts, const std::string& json) const;

private:
    std::string folder_;
    DateText nameText_;
};

} // namespace zint
