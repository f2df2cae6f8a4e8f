#include "commands/options.h"

#include "connection/vehiclePorts.h"
#include "launcher/launcher.h"
#include "link/portDirectory.h"
#include "shared/systemFiles.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

namespace zint {
namespace {

constexpr const char* connectionGroup = "Connection";

std::optional<int> wholeNumber(std::string_view text)
{
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    if (text.starts_with('+'))
        text.remove_prefix(1);
    int value = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    return fault == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

/// Whether a name is made as those of the ports, whatever its number, and can be nothing else.
bool looksLikePort(std::string_view name)
{
    return !hasNumberedPorts && name.size() > 3 && upperCase(name.substr(0, 3)) == "COM" &&
           std::ranges::all_of(name.substr(3), [](char digit) { return digit >= '0' && digit <= '9'; });
}

/// The location, if it can be used. @throws UsageError
const std::string& usable(const std::string& location)
{
    if (const std::string problem = problemOf(portLocation(location)); !problem.empty())
        throw UsageError(problem);
    return location;
}

void readPort(const std::string& text, ConnectionOptions& options)
{
    const std::string name = text.substr(0, text.find('='));
    const std::string location = text.substr(std::min(name.size() + 1, text.size()));
    options.portNumber = PortDirectory::numberOf(name);
    if (options.portNumber) {
        if (text != name && location.empty())
            throw UsageError("the path is missing");
        options.portLocation = usable(location);
        return;
    }
    if (looksLikePort(name))
        throw UsageError("there are com1 to com8; com1=PATH lets one of them stand for a device");
    if (text.empty())
        throw UsageError("give com1 to com8, or the path of a device");
    options.portNumber = PortNumber{1};
    options.portLocation = usable(text);
}

void readSpeed(const std::string& text, ConnectionOptions& options)
{
    const auto* const speed =
        std::ranges::find(lineSpeeds, text, [](int bits) { return std::to_string(bits); });
    if (speed == lineSpeeds.end())
        throw UsageError("give 9600 or 38400");
    options.speedPosition = static_cast<int>(speed - lineSpeeds.begin());
}

void simulate(ConnectionOptions& options)
{
    if (options.portNumber.value_or(PortNumber{1}) != PortNumber{1} || !options.portLocation.empty())
        throw UsageError("--simulate puts the simulated vehicle on com1; use --port " +
                         portName(*options.portNumber) + "=simulated for another port");
    options.portNumber = PortNumber{1};
    options.portLocation = PortDirectory::simulated;
}

} // namespace

std::string wholePath(const std::string& path)
{
    std::error_code error; // the working folder may be gone
    const std::filesystem::path whole = std::filesystem::absolute(utf8Path(path), error);
    return error ? path : utf8Text(whole.lexically_normal());
}

CLI::Option* addValue(CLI::App& command, const std::string& name, const std::string& valueName,
                      const std::string& description, std::function<void(const std::string&)> read)
{
    const auto reading = [name, read = std::move(read)](const std::string& value) {
        try {
            read(value);
        } catch (const UsageError& error) {
            throw UsageError(name + (value.empty() ? "" : " ") + value + ": " + error.what());
        }
    };
    return command.add_option_function<std::string>(name, reading, description)
        ->type_name(valueName)
        ->take_last();
}

CLI::Option* addNumber(CLI::App& command, const std::string& name, const std::string& valueName,
                       const std::string& description, const std::string& what,
                       std::pair<int, int> leastAndMost, std::function<void(int)> take)
{
    const auto read = [=, take = std::move(take)](const std::string& text) {
        const auto [least, most] = leastAndMost;
        const std::optional<int> number = wholeNumber(text);
        if (!number || *number < least || *number > most)
            throw UsageError("give " + what + ", " + std::to_string(least) + " to " + std::to_string(most));
        take(*number);
    };
    return addValue(command, name, valueName, description, read);
}

CLI::Option* addTimeout(CLI::App& command, std::chrono::seconds& timeout, const std::string& description)
{
    return addNumber(command, "--timeout", "SECONDS", description, "seconds", {0, mostSeconds},
                     [&timeout](int seconds) { timeout = std::chrono::seconds(seconds); });
}

CLI::Option* addFile(CLI::App& command, const std::string& name, std::string& path,
                     const std::string& description)
{
    return addValue(command, name, "FILE", description, [&path](const std::string& text) {
        if (text.empty())
            throw UsageError("the file's name is missing");
        path = text;
    });
}

void addQuiet(CLI::App& command, bool& quiet) { command.add_flag("--quiet", quiet, "Show no progress."); }

void requireOne(const std::vector<const CLI::Option*>& options)
{
    if (std::ranges::count_if(options, [](const CLI::Option* option) { return option->count() > 0; }) < 2)
        return;
    std::string names;
    for (const CLI::Option* option : options) {
        const char* const between = option == options.back() ? " and " : ", ";
        names += (names.empty() ? "" : between) + option->get_name();
    }
    throw UsageError(names + " exclude each other; give one of them");
}

void addConnection(CLI::App& command, ConnectionOptions& options)
{
    addValue(
        command, "--port", "PORT",
        "Port to use: com1 to com8, the path of a device (stands for com1=PATH), or comN=PATH. PATH may "
        "have a speed of its own (" +
            std::string(exampleDevice) +
            "@115200), or be tcp:HOST:PORT (a Wi-Fi adapter), or "
            "replay:FILE (a recording; replay-timed:FILE takes the time that was recorded), or simulated (a "
            "vehicle with options of zint-sim behind a colon: \"simulated:protocol=can units=2\").",
        [&options](const std::string& text) { readPort(text, options); })
        ->group(connectionGroup);
    addValue(command, "--speed", "9600|38400",
             "Line speed: 9600 or 38400 bits per second (default: as chosen in the launcher, at first 9600; "
             "most USB and Bluetooth adapters use 38400).",
             [&options](const std::string& text) { readSpeed(text, options); })
        ->group(connectionGroup);
    command
        .add_flag_callback(
            "--simulate", [&options] { simulate(options); }, "Put a simulated adapter and vehicle on com1.")
        ->group(connectionGroup);
    if (command.get_parent() == nullptr) // the windows record from their menu
        return;
    addFile(command, "--transcript", options.transcriptPath,
            "Record all that goes to the adapter and comes back.")
        ->group(connectionGroup);
    command
        .add_flag("--mask", options.isIdentityLeftOut, "Leave out the vehicle's identity in the transcript.")
        ->group(connectionGroup);
}

void requireWhole(const ConnectionOptions& options)
{
    if (options.isIdentityLeftOut && options.transcriptPath.empty())
        throw UsageError("--mask says what a transcript lacks; give --transcript FILE, too");
    if (const PortLocation location = portLocation(options.portLocation);
        location.kind == PortLocation::Kind::recording)
        requireDifferentFiles({location.path, options.transcriptPath});
}

CLI::Option* addDecimals(CLI::App& command, std::optional<Decimals>& decimals)
{
    return addValue(
        command, "--decimals", "point|comma",
        "What a CSV file has in front of decimals: a point (default), or a comma, with semicolons "
        "between its fields.",
        [&decimals](const std::string& text) {
            if (text != "point" && text != "comma")
                throw UsageError("give point or comma");
            decimals = text == "comma" ? Decimals::comma : Decimals::point;
        });
}

void requireCsv(const std::optional<Decimals>& decimals, const std::string& path)
{
    if (decimals && !isCsvPath(path))
        throw UsageError("--decimals goes with an export whose name ends in .csv");
}

void requireDifferentFiles(const std::vector<std::string>& paths)
{
    std::vector<std::filesystem::path> seen;
    for (const std::string& path : paths) {
        if (path.empty())
            continue;
        const std::filesystem::path whole = utf8Path(wholePath(path));
        if (std::ranges::any_of(seen, [&](const auto& other) { return isSameFile(other, whole); }))
            throw UsageError("\"" + path + "\" is named twice; give each file a name of its own");
        seen.push_back(whole);
    }
}

} // namespace zint
