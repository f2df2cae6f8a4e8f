#pragma once

#include "shared/fileError.h"

#include <cstddef>
#include <functional>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

/// Text files as all tools write and read them: lines ended by CR LF, paths in UTF-8.
namespace zint {

inline constexpr std::string_view lineEnd = "\r\n";

/// Some programs begin a UTF-8 text with it.
inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// Reads a stream line by line. CR LF, LF alone and CR alone end a line, and so does the end of the stream;
/// the Ctrl-Z by which DOS programs end a text belongs to no line.
class LineReader {
public:
    /// Longer lines are no text of this program's; reading on would only fill the memory.
    static constexpr std::size_t longestLine = 65536;

    explicit LineReader(std::istream& stream) : stream_(stream) {}

    /// The next line without its end, in UTF-8; nothing at the end of the stream.
    /// @throws FileError for a line that is too long or holds the character 0, as no text does, for UTF-16,
    /// or when the stream can't be read
    std::optional<std::string> next();

    /// The number, from 1, of the line that next() gave or failed at.
    std::size_t number() const { return number_; }

    /// Whether the line that next() gave had an end; one that was cut short has none.
    bool isEnded() const { return isEnded_; }

private:
    int nextCharacter();

    std::istream& stream_;
    std::size_t number_ = 0;
    bool isEnded_ = false;
};

/// Calls `read` with the file's stream. @throws FileError when the file can't be opened; whatever `read`
/// throws
void readFile(const std::string& path, const std::function<void(std::istream&)>& read);

/// A whole file. @throws FileError when it can't be read
std::string contentOf(const std::string& path);

/// The file that a symbolic link stands for, if it exists; else the path itself.
std::string behindLink(const std::string& path);

/// A name beside the file that no other program uses: for a file that is to take its place once it is whole.
std::string newNameBeside(const std::string& path);

/// Gives a finished file its name, in the same folder. What has the name already stays, unless it is an empty
/// file and no link. @throws FileError when that fails; the finished file then keeps the name that it has
void publishFile(const std::string& finished, const std::string& path);

/// Makes sure that replaceFile() can begin, as long as nothing changes. Nothing is written to the file.
/// @throws FileError when it can't
void requireWritable(const std::string& path);

/// Writes a file in one step: `write` fills a new file, which then takes the old one's place. When anything
/// fails, the old file stays whole and the new one is removed. What is no plain file (a pipe, a device) is
/// written directly.
/// @throws FileError when the file can't be written to its end
void replaceFile(const std::string& path, const std::function<void(std::ostream&)>& write);

/// Adds to the end of a file, or makes it, in one step as replaceFile() does.
/// @throws FileError when that fails; the file is then as it was
void appendToFile(const std::string& path, std::string_view text);

} // namespace zint
