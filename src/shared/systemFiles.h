#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

/// What writing whole files needs of the system.
namespace zint {

/// Why a file could not be opened, read or written, in the system's words or plainer ones.
/// @param number of errno; 0 where the reason is not known
std::string failureReason(const std::filesystem::path& file, int number);

/// When a file was written last, as exactly as the system knows; nothing where it can't be told.
std::optional<std::chrono::system_clock::time_point> lastChange(const std::filesystem::path& file);

/// Lets a finished file take the place of another one in its folder, which need not exist.
/// @return why it could not; empty when it did
std::string takePlace(const std::filesystem::path& finished, const std::filesystem::path& file);

/// Gives a finished file a name in its folder, unless anything has that name.
/// @return why it could not; empty when it did
std::string takeFreeName(const std::filesystem::path& finished, const std::filesystem::path& file);

/// Whether two whole paths without "." and ".." name the same file, by the system's rule for small letters
/// and capitals.
bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

} // namespace zint
