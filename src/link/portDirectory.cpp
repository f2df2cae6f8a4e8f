#include "link/portDirectory.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

constexpr const char* section = "Ports";

std::size_t indexOf(int number)
{
    return static_cast<std::size_t>(number - 1);
}

} // namespace

std::string PortDirectory::Target::text() const
{
    if (location.empty())
        return "nothing connected";
    if (isSimulated())
        return "simulated vehicle";
    return description.empty() ? location : location + " - " + description;
}

PortDirectory::Target PortDirectory::target(int number) const
{
    std::string location = thisRun_.at(indexOf(number));
    if (location.empty())
        location = assignment(number);
    if (location.empty())
        location = system_.fixedLocation(number).value_or("");

    const auto ports = system_.detected();
    if (location.empty())
        return indexOf(number) < ports.size()
                   ? Target{ports[indexOf(number)].location, ports[indexOf(number)].description}
                   : Target{};
    const auto known = std::ranges::find(ports, location, &DetectedPort::location);
    return {location, known == ports.end() ? std::string() : known->description};
}

std::string PortDirectory::assignment(int number) const
{
    return settings_.get(section, name(number));
}

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
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    for (int number = 1; number <= portCount; ++number) {
        if (lower == name(number))
            return number;
    }
    return std::nullopt;
}

} // namespace zint
