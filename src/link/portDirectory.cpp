#include "link/portDirectory.h"

#include "shared/module1.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

constexpr const char* section = "Ports";

std::size_t indexOf(int number) { return static_cast<std::size_t>(number - 1); }

} // namespace

std::string PortDirectory::Target::text() const
{
    if (isSimulated())
        return "simulated vehicle";
    if (location.empty())
        return "nothing connected";
    if (!connected)
        return location + " - nothing connected";
    return description.empty() ? location : location + " - " + description;
}

PortDirectory::Target PortDirectory::target(int number, const std::vector<DetectedPort>& ports) const
{
    std::string location = assignmentForThisRun(number);
    if (location.empty())
        location = assignment(number);
    return location.empty() ? automaticTarget(number, ports) : targetAt(location, ports);
}

PortDirectory::Target PortDirectory::automaticTarget(int number, const std::vector<DetectedPort>& ports) const
{
    if (const auto fixed = system_.fixedLocation(number))
        return targetAt(*fixed, ports);
    if (indexOf(number) >= ports.size())
        return {};
    const DetectedPort& port = ports[indexOf(number)];
    return {port.location, port.description, true};
}

PortDirectory::Target PortDirectory::targetAt(const std::string& location,
                                              const std::vector<DetectedPort>& ports) const
{
    if (location == simulated)
        return {location, {}, true};
    const auto known = std::ranges::find(ports, system_.devicePath(location), &DetectedPort::location);
    if (known != ports.end())
        return {location, known->description, true};
    return {location, {}, system_.exists(location)};
}

std::string PortDirectory::assignment(int number) const { return settings_.get(section, name(number)); }

std::string PortDirectory::assignmentForThisRun(int number) const { return thisRun_.at(indexOf(number)); }

void PortDirectory::assign(int number, const std::string& location)
{
    if (location.empty())
        settings_.remove(section, name(number));
    else
        settings_.save(section, name(number), location);
    thisRun_.at(indexOf(number)).clear();
}

void PortDirectory::assignForThisRun(int number, std::string location)
{
    thisRun_.at(indexOf(number)) = std::move(location);
}

std::optional<int> PortDirectory::numberOf(std::string_view text)
{
    const std::string wanted = upperCase(text);
    for (int number = 1; number <= portCount; ++number) {
        if (wanted == upperCase(name(number)))
            return number;
    }
    return std::nullopt;
}

} // namespace zint
