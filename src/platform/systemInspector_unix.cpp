#include "platform/serialSystem.h"
#include "platform/systemInspector.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zint {
namespace {

namespace fs = std::filesystem;

/// Of chips that turn USB into serial lines, as they are built into adapters and their cables.
constexpr std::array<std::string_view, 4> converterMakers = {"0403", "067b", "10c4", "1a86"};

/// The first line of a small file; empty where it can't be read.
std::string lineIn(const fs::path& path)
{
    std::string line;
    std::ifstream file(path);
    std::getline(file, line);
    return line;
}

/// What a folder holds; nothing where it can't be read.
std::vector<fs::path> entriesOf(const fs::path& folder)
{
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        entries.push_back(entry->path());
    std::ranges::sort(entries);
    return entries;
}

bool isNumber(const std::string& text)
{
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

/// "minicom (1234)".
std::string programText(const fs::path& process)
{
    return lineIn(process / "comm") + " (" + process.filename().string() + ")";
}

std::vector<fs::path> processesIn(const std::string& root)
{
    std::vector<fs::path> processes = entriesOf(root + "/proc");
    std::erase_if(processes, [](const fs::path& path) { return !isNumber(path.filename().string()); });
    return processes;
}

fs::path linkIn(const fs::path& link)
{
    std::error_code error;
    return fs::read_symlink(link, error);
}

/// Where links lead to, without a root in front.
std::string wholePath(const std::string& root, const std::string& location)
{
    std::error_code error;
    const std::string path = devicePath(location);
    const fs::path whole = fs::canonical(root + path, error);
    return error ? path : whole.string().substr(root.empty() ? 0 : fs::path(root).string().size());
}

/// Whether the device or a part of it has become a port.
bool hasPort(const fs::path& device)
{
    for (const fs::path& part : entriesOf(device)) {
        for (const fs::path& entry : entriesOf(part)) {
            if (entry.filename().string().starts_with("tty"))
                return true;
        }
    }
    return false;
}

/// The driver of a device's first part that has one.
std::string driverOf(const fs::path& device)
{
    for (const fs::path& part : entriesOf(device)) {
        if (const fs::path driver = linkIn(part / "driver"); !driver.empty())
            return driver.filename().string();
    }
    return {};
}

std::vector<PortlessDevice> portlessDevices(const std::string& root)
{
    std::vector<PortlessDevice> devices;
    for (const fs::path& device : entriesOf(root + "/sys/bus/usb/devices")) {
        const std::string maker = lineIn(device / "idVendor");
        if (std::ranges::find(converterMakers, maker) == converterMakers.end() || hasPort(device))
            continue;
        devices.push_back({.usbIds = maker + ":" + lineIn(device / "idProduct"),
                           .product = lineIn(device / "product"),
                           .driver = driverOf(device)});
    }
    return devices;
}

void lookAtLock(const std::string& root, const std::string& name, PortFacts& facts)
{
    for (const char* folder : {"/run/lock", "/var/lock", "/var/spool/lock", "/var/spool/uucp", "/tmp"}) {
        const fs::path file = root + folder + "/LCK.." + name;
        std::string process = lineIn(file);
        process.erase(0, process.find_first_not_of(' '));
        const fs::path running = root + "/proc/" + process;
        if (!isNumber(process) || process == std::to_string(::getpid()) || !fs::exists(running))
            continue; // whoever has left it behind is gone
        facts.lockFile = file.string().substr(root.size());
        facts.lockHolder = programText(running);
    }
}

/// Whether the user's groups as they are listed hold a group, which the running program may lack.
bool isListedIn(const group& entry)
{
    const passwd* const user = ::getpwuid(::getuid());
    if (user == nullptr)
        return false;
    for (char** member = entry.gr_mem; *member != nullptr; ++member) {
        if (std::string_view(*member) == user->pw_name)
            return true;
    }
    return false;
}

void lookAtRights(const std::string& file, PortFacts& facts)
{
    struct stat status = {};
    if (::stat(file.c_str(), &status) != 0)
        return;
    facts.mayBeUsed = ::access(file.c_str(), R_OK | W_OK) == 0;
    facts.age = std::chrono::seconds(std::max<std::time_t>(std::time(nullptr) - status.st_ctime, 0));
    constexpr mode_t groupMayUse = S_IRGRP | S_IWGRP;
    const group* const entry = ::getgrgid(status.st_gid);
    if (facts.mayBeUsed || (status.st_mode & groupMayUse) != groupMayUse)
        return;
    facts.group = entry == nullptr ? std::to_string(status.st_gid) : entry->gr_name;
    facts.isGroupGranted = entry != nullptr && isListedIn(*entry);
}

std::optional<std::chrono::milliseconds> latencyOf(const std::string& root, const std::string& name)
{
    const std::string text = lineIn(root + "/sys/bus/usb-serial/devices/" + name + "/latency_timer");
    return isNumber(text) && text.size() < 4 ? std::optional(std::chrono::milliseconds(std::stoi(text)))
                                             : std::nullopt;
}

} // namespace

PortFacts SystemInspector::facts(const std::string& location) const
{
    PortFacts facts;
    facts.isSandboxed = fs::exists(root_ + "/.flatpak-info") || std::getenv("SNAP") != nullptr;
    facts.portless = portlessDevices(root_);
    for (const fs::path& process : processesIn(root_)) {
        const std::string name = lineIn(process / "comm");
        facts.modemManagerRuns = facts.modemManagerRuns || name == "ModemManager";
        facts.brlttyRuns = facts.brlttyRuns || name == "brltty";
    }
    if (location.empty())
        return facts;
    facts.path = wholePath(root_, location);
    const std::string name = fs::path(facts.path).filename().string();
    facts.exists = fs::exists(root_ + facts.path);
    facts.isBluetooth = isBluetoothPort(facts.path);
    facts.latency = latencyOf(root_, name);
    lookAtLock(root_, name, facts);
    lookAtRights(root_ + facts.path, facts);
    return facts;
}

std::vector<std::string> SystemInspector::holders(const std::string& location) const
{
    const std::string path = wholePath(root_, location);
    std::vector<std::string> names;
    for (const fs::path& process : processesIn(root_)) {
        const std::vector<fs::path> files = entriesOf(process / "fd");
        const auto isPort = [&path](const fs::path& file) { return linkIn(file) == path; };
        if (process.filename() != std::to_string(::getpid()) && std::ranges::any_of(files, isPort))
            names.push_back(programText(process));
    }
    return names;
}

OpenTrouble SystemInspector::troubleOf(int number) const
{
    switch (number) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return OpenTrouble::missing;
    case EACCES:
    case EPERM:
        return OpenTrouble::notAllowed;
    case EBUSY:
        return OpenTrouble::inUse;
    case ENOTTY:
    case EISDIR:
        return OpenTrouble::noSerialPort;
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ENETUNREACH:
        return OpenTrouble::hostDown;
    case ECONNREFUSED:
#ifdef EBADE
    case EBADE: // a wrong PIN
#endif
        return OpenTrouble::refused;
    case ETIMEDOUT:
        return OpenTrouble::timedOut;
    default:
        return OpenTrouble::unknown;
    }
}

} // namespace zint
