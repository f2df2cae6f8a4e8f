#include "shared/module1.h"
#include "shared/systemFiles.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <system_error>
#include <thread>
#include <windows.h>

namespace zint {
namespace {

namespace fs = std::filesystem;

constexpr const char* isOpenText = "another program has it open";

bool isHeldByOther(DWORD error) { return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION; }

/// The system's text, in the user's language.
std::string systemText(DWORD error)
{
    std::array<wchar_t, 512> text{};
    const DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                          error, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    if (length == 0)
        return "error " + std::to_string(error);
    return std::string(trimmed(utf8Text(std::wstring(text.data(), length)), " .\r\n"));
}

/// What stands behind the one number by which the standard library tells that a file may not be opened.
std::string refusalReason(const fs::path& file)
{
    const DWORD attributes = ::GetFileAttributesW(file.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return systemText(ERROR_ACCESS_DENIED);
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return std::generic_category().message(EISDIR);
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return "the file is read-only";
    const HANDLE opened = ::CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    const DWORD error = opened == INVALID_HANDLE_VALUE ? ::GetLastError() : ERROR_ACCESS_DENIED;
    if (opened != INVALID_HANDLE_VALUE)
        ::CloseHandle(opened);
    return isHeldByOther(error) ? isOpenText : systemText(error);
}

/// The other file's rights, attributes and times of birth stay, where there is one.
bool replaces(const fs::path& finished, const fs::path& file)
{
    constexpr DWORD inAnyCase = REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS;
    return ::ReplaceFileW(file.c_str(), finished.c_str(), nullptr, inAnyCase, nullptr, nullptr) != 0 ||
           // where there is no other file, and on drives that can't do that
           ::MoveFileExW(finished.c_str(), file.c_str(),
                         MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

bool moves(const fs::path& finished, const fs::path& file)
{
    return ::MoveFileExW(finished.c_str(), file.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
}

/// Virus scanners and indexers open each new file for a moment, and nobody can move it meanwhile.
std::string patiently(bool (*step)(const fs::path&, const fs::path&), const fs::path& finished,
                      const fs::path& file)
{
    constexpr int mostAttempts = 10;
    constexpr std::chrono::milliseconds pause{20};
    for (int attempt = 1; !step(finished, file); ++attempt) {
        const DWORD error = ::GetLastError();
        const bool isRefused = error == ERROR_ACCESS_DENIED; // as a file that is open is, too
        if (attempt == mostAttempts || !(isHeldByOther(error) || isRefused))
            return isHeldByOther(error) ? isOpenText : isRefused ? refusalReason(file) : systemText(error);
        std::this_thread::sleep_for(pause);
    }
    return {};
}

} // namespace

std::string failureReason(const fs::path& file, int number)
{
    return number == EACCES ? refusalReason(file)
                            : std::generic_category().message(number != 0 ? number : EIO);
}

/// The standard library tells whole seconds here.
std::optional<std::chrono::system_clock::time_point> lastChange(const fs::path& file)
{
    using std::chrono::system_clock;
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    constexpr std::chrono::seconds from1601To1970{11'644'473'600};
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (::GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data) == 0)
        return std::nullopt;
    const ULARGE_INTEGER written{{data.ftLastWriteTime.dwLowDateTime, data.ftLastWriteTime.dwHighDateTime}};
    const Ticks since1601{static_cast<std::int64_t>(written.QuadPart)};
    return system_clock::time_point(
        std::chrono::duration_cast<system_clock::duration>(since1601 - from1601To1970));
}

std::string takePlace(const fs::path& finished, const fs::path& file)
{
    return patiently(replaces, finished, file);
}

std::string takeFreeName(const fs::path& finished, const fs::path& file)
{
    return patiently(moves, finished, file);
}

bool isSameFile(const fs::path& one, const fs::path& other)
{
    constexpr int asFarAsTheyGo = -1;
    const std::wstring text = fs::path(one).make_preferred();
    const std::wstring otherText = fs::path(other).make_preferred();
    return ::CompareStringOrdinal(text.c_str(), asFarAsTheyGo, otherText.c_str(), asFarAsTheyGo, TRUE) ==
           CSTR_EQUAL;
}

} // namespace zint
