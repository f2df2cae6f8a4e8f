#include "shared/systemFiles.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace zint {

namespace fs = std::filesystem;

std::string failureReason(const fs::path& /*file*/, int number)
{
    return std::generic_category().message(number != 0 ? number : EIO);
}

std::optional<std::chrono::system_clock::time_point> lastChange(const fs::path& file)
{
    using std::chrono::system_clock;
    std::error_code error;
    const auto changed = fs::last_write_time(file, error);
    if (error)
        return std::nullopt;
    const auto age = fs::file_time_type::clock::now() - changed; // not all libraries can convert the two
    return system_clock::now() - std::chrono::duration_cast<system_clock::duration>(age);
}

std::string takePlace(const fs::path& finished, const fs::path& file)
{
    std::error_code error;
    fs::rename(finished, file, error);
    return error ? error.message() : std::string();
}

/// A rename alone would replace what has come meanwhile.
std::string takeFreeName(const fs::path& finished, const fs::path& file)
{
    std::error_code error;
    fs::create_hard_link(finished, file, error);
    if (!error) {
        fs::remove(finished, error);
        return {};
    }
    std::FILE* const made = std::fopen(file.c_str(), "wx"); // some file systems know no links
    if (made == nullptr)
        return failureReason(file, errno);
    std::fclose(made);
    return takePlace(finished, file);
}

bool isSameFile(const fs::path& one, const fs::path& other) { return one == other; }

} // namespace zint
