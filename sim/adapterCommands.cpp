#include "sim/adapterCommands.h"

#include "shared/module1.h"

#include <array>
#include <charconv>
#include <cstddef>

namespace zint {
namespace {

constexpr std::string_view identification = "ELM327 v1.5";

/// The hexadecimal digits behind a command's name.
struct Argument {
    std::string_view digits;
    std::uint32_t value = 0;
};

using Action = CommandResult (*)(Argument argument, AdapterSettings& settings, const Vehicle& vehicle);

struct Command {
    std::string_view name;
    std::size_t fewestDigits;
    std::size_t mostDigits;
    std::uint32_t highestValue;
    Action run;
};

CommandResult done() { return {.text = "OK"}; }

/// For what makes no difference to the simulated vehicle.
CommandResult accept(Argument, AdapterSettings&, const Vehicle&) { return done(); }

/// Tells the version, behind a reset or on its own.
template <Reset kind>
CommandResult reset(Argument, AdapterSettings&, const Vehicle&)
{
    return {.text = std::string(identification), .reset = kind};
}

CommandResult describeDevice(Argument, AdapterSettings&, const Vehicle&)
{
    return {.text = "OBDII to RS232 Interpreter"};
}

CommandResult readVoltage(Argument, AdapterSettings&, const Vehicle& vehicle)
{
    return {.text = vehicle.voltage()};
}

CommandResult restoreDefaults(Argument, AdapterSettings& settings, const Vehicle&)
{
    settings.restoreDefaults();
    return done();
}

CommandResult disconnect(Argument, AdapterSettings& settings, const Vehicle&)
{
    settings.connected = false;
    return done();
}

template <bool AdapterSettings::*member>
CommandResult switchTo(Argument argument, AdapterSettings& settings, const Vehicle&)
{
    settings.*member = argument.value != 0;
    return done();
}

CommandResult selectProtocol(unsigned protocol, AdapterSettings& settings)
{
    settings.protocol = protocol;
    settings.connected = false;
    return done();
}

CommandResult setProtocol(Argument argument, AdapterSettings& settings, const Vehicle&)
{
    CommandResult result = selectProtocol(argument.value, settings);
    settings.storedProtocol = settings.protocol;
    return result;
}

CommandResult tryProtocol(Argument argument, AdapterSettings& settings, const Vehicle&)
{
    return selectProtocol(argument.value, settings);
}

/// "A3" asks to try protocol 3 first and then the others: in the end, any protocol will do.
template <Action select>
CommandResult automatic(Argument, AdapterSettings& settings, const Vehicle& vehicle)
{
    return select({}, settings, vehicle);
}

CommandResult setTimeout(Argument argument, AdapterSettings& settings, const Vehicle&)
{
    settings.timeout = argument.value == 0 ? AdapterSettings::defaultTimeout : argument.value;
    return done();
}

/// The protocol in use: the chosen one, or the vehicle's where the adapter found it by itself.
unsigned usedProtocol(const AdapterSettings& settings, const Vehicle& vehicle)
{
    const bool found = settings.protocol == automaticProtocol && settings.connected;
    return found ? vehicle.protocol() : settings.protocol;
}

/// Three digits for a header of 11 bits, six for three bytes; eight with the priority of 29 bits, which is
/// not looked at. A real one takes each of them for any protocol.
CommandResult setHeader(Argument argument, AdapterSettings& settings, const Vehicle& vehicle)
{
    constexpr std::uint32_t threeBytes = 0xFFFFFF;
    const std::size_t digits = argument.digits.size();
    const unsigned protocol = usedProtocol(settings, vehicle);
    const HeaderForm form = protocolTraits(protocol).headerForm;
    const bool isKnown = settings.mindsHeaderForm && protocol != automaticProtocol;
    const bool fits = digits == 3   ? form == HeaderForm::id11
                      : digits == 6 ? form != HeaderForm::id11
                                    : form == HeaderForm::id29;
    if ((digits != 3 && digits != 6 && digits != 8) || (isKnown && !fits))
        return {.text = "?"};
    settings.header = argument.value & threeBytes;
    return done();
}

template <std::optional<std::uint32_t> AdapterSettings::*member>
CommandResult setReceived(Argument argument, AdapterSettings& settings, const Vehicle&)
{
    if (argument.digits.size() != 3 && argument.digits.size() != 8)
        return {.text = "?"};
    settings.*member = argument.value;
    return done();
}

CommandResult setReceiveAddress(Argument argument, AdapterSettings& settings, const Vehicle& vehicle)
{
    constexpr std::uint32_t allBits = 0x1FFFFFFF;
    CommandResult result = setReceived<&AdapterSettings::receiveIdentifier>(argument, settings, vehicle);
    if (result.text == "OK")
        settings.receiveMask = allBits;
    return result;
}

CommandResult resetReceiveAddress(Argument, AdapterSettings& settings, const Vehicle&)
{
    settings.receiveIdentifier.reset();
    settings.receiveMask.reset();
    return done();
}

CommandResult describeProtocol(Argument, AdapterSettings& settings, const Vehicle& vehicle)
{
    const unsigned used = usedProtocol(settings, vehicle);
    const std::string name(protocolTraits(used).name);
    return {.text = used == settings.protocol ? name : "AUTO, " + name};
}

CommandResult numberProtocol(Argument, AdapterSettings& settings, const Vehicle& vehicle)
{
    const std::string number = hexText(static_cast<std::int32_t>(usedProtocol(settings, vehicle)), 1);
    return {.text = settings.protocol == automaticProtocol ? "A" + number : number};
}

// Where one name begins another (S, SP, SPA), the digits that must follow tell which one is meant.
constexpr std::array commands{
    Command{"Z", 0, 0, 0, reset<Reset::cold>},
    Command{"WS", 0, 0, 0, reset<Reset::warm>},
    Command{"D", 0, 0, 0, restoreDefaults},
    Command{"I", 0, 0, 0, reset<Reset::none>},
    Command{"@1", 0, 0, 0, describeDevice},
    Command{"RV", 0, 0, 0, readVoltage},
    Command{"E", 1, 1, 1, switchTo<&AdapterSettings::echo>},
    Command{"L", 1, 1, 1, switchTo<&AdapterSettings::lineFeeds>},
    Command{"S", 1, 1, 1, switchTo<&AdapterSettings::blanks>},
    Command{"H", 1, 1, 1, switchTo<&AdapterSettings::headers>},
    Command{"ST", 2, 2, 0xFF, setTimeout},
    Command{"AT", 1, 1, 2, switchTo<&AdapterSettings::adaptiveTiming>},
    Command{"SP", 1, 1, highestProtocol, setProtocol},
    Command{"SPA", 1, 1, highestProtocol, automatic<setProtocol>},
    Command{"TP", 1, 1, highestProtocol, tryProtocol},
    Command{"TPA", 1, 1, highestProtocol, automatic<tryProtocol>},
    Command{"DP", 0, 0, 0, describeProtocol},
    Command{"DPN", 0, 0, 0, numberProtocol},
    Command{"PC", 0, 0, 0, disconnect},
    Command{"SH", 3, 8, 0xFFFFFFFF, setHeader},
    Command{"M", 1, 1, 1, accept},
    Command{"R", 1, 1, 1, accept},
    Command{"AL", 0, 0, 0, accept},
    Command{"NL", 0, 0, 0, accept},
    Command{"AR", 0, 0, 0, resetReceiveAddress},
    Command{"SS", 0, 0, 0, accept},
    Command{"FE", 0, 0, 0, accept},
    Command{"SI", 0, 0, 0, accept},
    Command{"SW", 2, 2, 0xFF, accept},
    Command{"IB10", 0, 0, 0, accept},
    Command{"KW", 1, 1, 1, accept},
    Command{"D", 1, 1, 1, switchTo<&AdapterSettings::lengthDigit>},
    Command{"V", 1, 1, 1, accept},
    Command{"CAF", 1, 1, 1, switchTo<&AdapterSettings::autoFormat>},
    Command{"CFC", 1, 1, 1, accept},
    Command{"CF", 3, 8, 0xFFFFFFFF, setReceived<&AdapterSettings::receiveIdentifier>},
    Command{"CM", 3, 8, 0xFFFFFFFF, setReceived<&AdapterSettings::receiveMask>},
    Command{"CRA", 3, 8, 0xFFFFFFFF, setReceiveAddress},
    Command{"CRA", 0, 0, 0, resetReceiveAddress},
    Command{"CP", 2, 2, 0x1F, accept},
};

/// What stands behind the command's name, if it fits.
std::optional<Argument> argumentOf(const Command& command, std::string_view text)
{
    if (!text.starts_with(command.name))
        return {};
    Argument argument{.digits = text.substr(command.name.size())};
    const std::string_view digits = argument.digits;
    if (digits.size() < command.fewestDigits || digits.size() > command.mostDigits)
        return {};
    if (digits.empty())
        return argument;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, argument.value, 16);
    if (error != std::errc{} || stop != end || argument.value > command.highestValue)
        return {};
    return argument;
}

} // namespace

void AdapterSettings::restoreDefaults()
{
    const AdapterSettings before = *this;
    *this = {};
    lineFeedsAtPowerUp = before.lineFeedsAtPowerUp;
    mindsHeaderForm = before.mindsHeaderForm;
    lineFeeds = before.lineFeedsAtPowerUp;
    storedProtocol = before.storedProtocol;
    protocol = before.storedProtocol;
}

FrameFilter AdapterSettings::filter(const ProtocolTraits& spoken) const
{
    return {.identifier = receiveIdentifier.value_or(spoken.receives.identifier),
            .mask = receiveMask.value_or(spoken.receives.mask)};
}

CommandResult runCommand(std::string_view command, AdapterSettings& settings, const Vehicle& vehicle)
{
    for (const Command& known : commands) {
        if (const auto argument = argumentOf(known, command))
            return known.run(*argument, settings, vehicle);
    }
    return {.text = "?"};
}

} // namespace zint
