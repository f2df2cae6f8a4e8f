#include "link/portDirectory.h"

#include "shared/module1.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

constexpr const char* section = "Ports";

std::size_t indexOf(PortNumber port) { return static_cast<std::size_t>(port) - 1; }

} // namespace

std::string PortDirectory::Target::text() const
{
    if (!place.problem.empty())
        return location + " - " + place.problem;
    std::string text = place.text();
    if (place.bitsPerSecond)
        text += " at " + std::to_string(*place.bitsPerSecond);
    if (place.kind == PortLocation::Kind::device && !connected)
        return text + " - nothing connected";
    return description.empty() ? text : text + " - " + description;
}

PortDirectory::Target PortDirectory::target(PortNumber port, const std::vector<DetectedPort>& ports) const
{
    std::string location = assignmentForThisRun(port);
    if (location.empty())
        location = assignment(port);
    return location.empty() ? automaticTarget(port, ports) : targetAt(location, ports);
}

PortDirectory::Target PortDirectory::automaticTarget(PortNumber port,
                                                     const std::vector<DetectedPort>& ports) const
{
    if (const auto fixed = system_.fixedLocation(port))
        return targetAt(*fixed, ports);
    if (indexOf(port) >= ports.size())
        return {};
    const DetectedPort& found = ports[indexOf(port)];
    return {found.location, found.description, true};
}

PortDirectory::Target PortDirectory::targetAt(const std::string& location,
                                              const std::vector<DetectedPort>& ports) const
{
    using Kind = PortLocation::Kind;
    const PortLocation place = portLocation(location);
    if (place.kind == Kind::network)
        return {location, "network adapter", true};
    if (place.kind == Kind::recording && !fileExists(place.path))
        return {location, "there is no such file", false};
    if (place.kind != Kind::device)
        return {location, {}, true};
    const auto known = std::ranges::find(ports, system_.devicePath(place.path), &DetectedPort::location);
    if (known != ports.end())
        return {location, known->description, true};
    return {location, {}, system_.exists(place.path)};
}

std::string PortDirectory::assignment(PortNumber port) const
{
    return settings_.get(section, portName(port));
}

std::string PortDirectory::assignmentForThisRun(PortNumber port) const { return thisRun_.at(indexOf(port)); }

void PortDirectory::assign(PortNumber port, const std::string& location)
{
    if (location.empty())
        settings_.remove(section, portName(port));
    else
        settings_.save(section, portName(port), location);
    thisRun_.at(indexOf(port)).clear();
}

void PortDirectory::assignForThisRun(PortNumber port, std::string location)
{
    thisRun_.at(indexOf(port)) = std::move(location);
}

std::optional<PortNumber> PortDirectory::numberOf(std::string_view text)
{
    const std::string wanted = upperCase(text);
    const auto* const port =
        std::ranges::find(allPorts, wanted, [](PortNumber p) { return upperCase(portName(p)); });
    return port == allPorts.end() ? std::nullopt : std::optional(*port);
}

} // namespace zint
