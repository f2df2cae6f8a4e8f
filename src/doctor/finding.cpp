#include "doctor/finding.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

struct Remedy {
    Observation what;
    std::string_view name;
    bool blocks;
    std::string_view cause; ///< "{}" stands for the finding's detail
    std::string_view first;
};

using enum Observation;

constexpr std::array remedies = std::to_array<Remedy>({
    {nothingConnected, "nothingConnected", true, "No serial port was found on this computer.",
     "Plug the adapter in. If nothing changes, try another cable and another USB socket; a Bluetooth adapter "
     "has to be "
     "paired first."},
    {notAssigned, "notAssigned", true, "Nothing is connected to this port, but this computer has others.",
     "Choose one of the ports that were found."},
    {portMissing, "portMissing", true,
     "{} does not exist now: the adapter is not plugged in, or it got another name.",
     "Plug the adapter in, or choose another port."},
    {takenByBraille, "takenByBraille", true,
     "The USB device {} is there, but the service \"brltty\" for braille displays has taken it.",
     "If no braille display is used, switch the service off (\"sudo systemctl mask --now brltty\" and "
     "\"brltty-udev\"), then "
     "unplug the adapter and plug it in again."},
    {driverMissing, "driverMissing", true, "The USB device {} is there, but no driver has made a port of it.",
     "Look for a driver for the device with this number; a newer system often has it."},
    {bluetoothUnbound, "bluetoothUnbound", true,
     "{} has not been bound to an adapter since the computer was started.",
     "Bind it: \"sudo rfcomm bind\" with the number of the port and the adapter's address; \"sdptool "
     "browse\" tells the "
     "channel, mostly 1."},
    {notInGroup, "notInGroup", true, "The port belongs to the group \"{}\", and you are not a member.",
     "Add yourself to the group (\"sudo usermod -aG {} $USER\"), then log out and in again."},
    {loginNeeded, "loginNeeded", true,
     "You have been added to the group \"{}\", which counts from the next login on.",
     "Log out and in again."},
    {ownerOnly, "ownerOnly", true, "{} may be used by its owner only.",
     "Let the administrator of this computer allow it to you."},
    {sandbox, "sandbox", true, "The program runs in a sandbox, which keeps it from {}.",
     "Allow the sandbox to use all devices (for Flatpak \"--device=all\", for Snap the interface "
     "\"serial-port\")."},
    {modemManager, "modemManager", true,
     "The adapter was plugged in a moment ago, and the service ModemManager is trying whether it is a modem.",
     "Wait for a quarter of a minute, then check again."},
    {incomingPort, "incomingPort", true,
     "{} waits for Bluetooth devices to call, and calls no adapter: it is an incoming port.",
     "Choose the adapter's outgoing port: the system's Bluetooth settings list both under COM Ports, and add "
     "one where it "
     "is missing."},
    {inUse, "inUse", true, "Another program has the port open: {}.", "Close that program, then check again."},
    {locked, "locked", true, "Another program has locked the port: {}.",
     "Close that program, then check again."},
    {noSerialPort, "noSerialPort", true, "{} is no serial port.", "Choose another port."},
    {driverRefusesChip, "driverRefusesChip", true,
     "The driver does not serve the chip of this cable, which it takes for a copy or for too old.",
     "Use another cable, or an older driver."},
    {partnerAway, "partnerAway", true, "The Bluetooth adapter is off, too far away, or connected to a phone.",
     "Plug it into the vehicle, switch Bluetooth off on phones nearby, then check again."},
    {partnerRefuses, "partnerRefuses", true,
     "The Bluetooth adapter refuses the connection: the channel or the PIN is wrong, or somebody else is "
     "connected.",
     "Remove the pairing and pair it anew; the PIN is mostly 1234 or 0000."},
    {networkRefused, "networkRefused", true,
     "There is a device at {}, but it takes no connection at this port.",
     "Try the ports 35000, 3333 and 23."},
    {networkSilent, "networkSilent", true,
     "Nothing at {} answers: this computer is not in the adapter's network.",
     "Join the adapter's Wi-Fi, and see whether this computer has an address like the adapter's, such as "
     "192.168.0.11."},
    {networkUnknown, "networkUnknown", true, "The address can't be reached: {}.",
     "See whether the address is right; most adapters have 192.168.0.10:35000."},
    {wrongAssignment, "wrongAssignment", true, "What the port stands for can't be used: {}.",
     "Correct it: File, Serial Ports... in the launcher, or --port."},
    {noRecording, "noRecording", true, "There is no recording to play: {}.",
     "Choose a transcript that Record Transcript... or Save Last Exchange... has made."},
    {openingFailed, "openingFailed", true, "The system could not open the port: {}.",
     "Unplug the adapter, wait for some seconds, plug it in again and check again."},
    {networkMute, "networkMute", true,
     "The connection stands, but nothing comes: such adapters speak to one program at a time, and another "
     "one has it.",
     "Close the app on the phone, then unplug the adapter and plug it in again."},
    {silence, "silence", true, "Nothing answers {}: the adapter has no power, or it sleeps.",
     "Plug the adapter into the vehicle, switch the ignition on, and look whether a lamp lights. Unplug both "
     "ends and plug "
     "them in again."},
    {noise, "noise", true, "Something answers, but it can't be read {}.",
     "Look up the adapter's speed in its papers and put it behind the port's name, as in NAME@250000; "
     "otherwise try "
     "another cable."},
    {noAdapter, "noAdapter", true, "Something answers, but not as a diagnostic adapter does: \"{}\".",
     "Choose the port of the adapter; this one belongs to another device."},
    {wrongSpeed, "wrongSpeed", true,
     "The adapter answers at {} bits per second, and not at the speed that is chosen.",
     "Take the speed over, or write it behind the name of the port: @{}."},
    {oneBehind, "oneBehind", true, "The adapter sends each answer only when the next command comes.",
     "Unplug the adapter from vehicle and computer, wait for ten seconds, plug it in again. If it stays so, "
     "use another "
     "adapter."},
    {lostMeanwhile, "lostMeanwhile", true,
     "The adapter vanished during the check: a loose plug, a weak radio link, or its "
     "power saving.",
     "Press the button of the adapter if it has one, or unplug it and plug it in again."},
    {stoppedAnswering, "stoppedAnswering", true, "The adapter stopped answering at {}.",
     "Unplug the adapter, wait for some seconds, plug it in again and check again."},
    {nameless, "nameless", false, "The adapter does not tell its name.",
     "Nothing needs to be done as long as all else works."},
    {settingsRefused, "settingsRefused", false, "The adapter refuses settings that this program uses: {}.",
     "Readings may lack what depends on them; another adapter has them."},
    {echoStays, "echoStays", false, "The adapter goes on repeating each command.",
     "Nothing needs to be done; requests take longer."},
    {saysYesToAll, "saysYesToAll", false,
     "The adapter says OK to a word that is no command, so that its OK proves little.",
     "Nothing needs to be done as long as all else works."},
    {headersNotShown, "headersNotShown", false,
     "The adapter says OK to headers and shows none, so that control units can't be told apart.",
     "Readings of several control units may be mixed up; another adapter shows them."},
    {noVoltage, "noVoltage", true,
     "The adapter measures {}: it is not in the vehicle's socket, or the socket has no power.",
     "Push the plug in as far as it goes; if that does not help, look at the fuse of the socket."},
    {absurdVoltage, "absurdVoltage", false,
     "The adapter measures {}, which no vehicle has: its voltmeter is not adjusted.",
     "Ignore the voltage that it tells."},
    {voltageRefused, "voltageRefused", false, "The adapter does not tell the voltage.",
     "Nothing needs to be done."},
    {ignitionOff, "ignitionOff", true, "No vehicle answers, most likely because the ignition is off{}.",
     "Switch the ignition on, best start the engine, then check again."},
    {noVehicle, "noVehicle", true,
     "No vehicle answers, though the engine seems to run ({}): the protocol is not found, or a "
     "wire is broken.",
     "Let Explorer try the protocols singly: ATTP6, ATTP8, ATTP7, ATTP9, then 3, 4, 5, 1 and 2, with 0100 "
     "behind each."},
    {noData, "noData", true,
     "The adapter reaches the bus, but no control unit answers: ignition off, or a vehicle without "
     "OBD-II.",
     "Switch the ignition on, best start the engine, then check again."},
    {busInitError, "busInitError", true,
     "The control units did not wake up: the ignition is off, or they were not ready yet.",
     "Switch the ignition on, wait for five seconds, then check again."},
    {fixedProtocol, "fixedProtocol", true,
     "The adapter is set to one protocol ({}), which this vehicle does not speak.",
     "Let the adapter choose: send ATSP0 in Explorer, or try ATTP6, 7, 8 and 9 there."},
    {canError, "canError", true,
     "The adapter finds no working CAN bus: another rate, another protocol, or a broken wire.",
     "Send ATTP8 and then 0100 in Explorer; if that answers, the vehicle uses the slower rate. Otherwise "
     "look at the plug."},
    {lowVoltageReset, "lowVoltageReset", true,
     "The adapter's power broke down for a moment, as it does when the engine is "
     "started; some search for no CAN bus after that.",
     "Unplug the adapter from the vehicle, plug it in again, and check again with the engine running."},
    {keepsStopping, "keepsStopping", true,
     "The adapter stops its work again and again, because something else sends to it.",
     "Close other programs and apps that use the adapter, then unplug it and plug it in again."},
    {bufferFull, "bufferFull", true, "The vehicle answers faster than the line carries.",
     "Use a faster line: a speed of 115200, or another kind of connection."},
    {busError, "busError", true, "The wires to the vehicle are disturbed, or busy.",
     "Push the plug in firmly, unplug other devices from the socket, then check again."},
    {damagedData, "damagedData", true, "The vehicle answers, but the answers are damaged on their way.",
     "Push the plug in firmly; if that does not help, try another adapter."},
    {requestRefused, "requestRefused", true,
     "The adapter does not know requests to a vehicle: it is a very weak copy.", "Use another adapter."},
    {endlessSearch, "endlessSearch", true, "The adapter was still looking for a vehicle after half a minute.",
     "Switch the ignition on, unplug the adapter and plug it in again, then check again."},
    {unreadableAnswer, "unreadableAnswer", true,
     "What came in place of the vehicle's answer can't be read: \"{}\".",
     "Check again; if it stays so, unplug the adapter and plug it in again."},
    {slowBus, "slowBus", false, "Requests take long for a vehicle of this kind.",
     "Use a connection by USB, and keep the adapter's own waiting times (ATAT1)."},
});

const Remedy& remedyFor(Observation what) { return *std::ranges::find(remedies, what, &Remedy::what); }

std::string filledIn(std::string_view text, const std::string& detail)
{
    const auto place = text.find("{}");
    if (place == std::string_view::npos)
        return std::string(text);
    return std::string(text.substr(0, place)) + detail + std::string(text.substr(place + 2));
}

} // namespace

std::string_view nameOf(Observation what) { return remedyFor(what).name; }

bool blocks(Observation what) { return remedyFor(what).blocks; }

std::string causeOf(const Finding& finding)
{
    return filledIn(remedyFor(finding.what).cause, finding.detail);
}

std::string firstStepFor(const Finding& finding)
{
    return filledIn(remedyFor(finding.what).first, finding.detail);
}

} // namespace zint
