#include "shared/textFile.h"

#include "shared/module1.h"
#include "shared/systemFiles.h"
#include "shared/utf8.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

namespace zint {
namespace {

namespace fs = std::filesystem;

constexpr int endOfStream = std::istream::traits_type::eof();
constexpr int dosEnd = 0x1A; // Ctrl-Z

std::string inQuotes(const std::string& path) { return "\"" + path + "\""; }

void writeAll(const fs::path& file, const std::string& path, const std::function<void(std::ostream&)>& write)
{
    const auto fail = [&file, &path](int number) {
        throw FileError(inQuotes(path) + " can't be written: " + failureReason(file, number));
    };
    errno = 0;
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    if (!stream)
        fail(errno);
    errno = 0;
    write(stream);
    stream.close();
    if (!stream)
        fail(errno);
}

/// Where a file is written.
struct Target {
    fs::path file; ///< behind a symbolic link, which stays
    fs::file_status old;

    /// Whether a new file takes the place of the old one; a pipe or a device is written directly.
    bool isReplaced() const { return !fs::exists(old) || fs::is_regular_file(old); }
};

/// @throws FileError for a folder, and for a file that may not be written
Target targetOf(const std::string& path)
{
    std::error_code error;
    const fs::path file = utf8Path(behindLink(path));
    const fs::file_status old = fs::status(file, error);
    if (fs::is_directory(old))
        throw FileError(inQuotes(path) + " can't be written: it is a folder");
    if (fs::is_regular_file(old) && !std::ofstream(file, std::ios::binary | std::ios::app))
        throw FileError(inQuotes(path) + " can't be written: " +
                        failureReason(file, EACCES)); // a new file would get past that
    return {file, old};
}

} // namespace

/// The end of a line of any kind is one line feed. A CR at the very end may be half of one, and ends the
/// text.
int LineReader::nextCharacter()
{
    const int c = stream_.get();
    if (c != '\r' && c != dosEnd)
        return c;
    const int following = stream_.peek();
    if (following == endOfStream)
        return endOfStream;
    if (c == '\r' && following == '\n')
        stream_.get();
    return c == '\r' ? '\n' : c;
}

std::optional<std::string> LineReader::next()
{
    std::string line;
    ++number_;
    isEnded_ = false;
    for (;;) {
        const int c = nextCharacter();
        if (c == endOfStream) {
            if (stream_.bad())
                throw FileError("the file can't be read to its end");
            if (line.empty())
                return std::nullopt;
            break;
        }
        if (c == '\n') {
            isEnded_ = true;
            break;
        }
        if (number_ == 1 && (line == "\xFF\xFE" || line == "\xFE\xFF"))
            throw FileError("the file is UTF-16: save it as UTF-8");
        if (c == 0)
            throw FileError("the file is no text");
        if (line.size() == longestLine)
            throw FileError("a line is longer than " + std::to_string(longestLine) + " characters");
        line += static_cast<char>(c);
    }
    while (number_ == 1 && line.starts_with(byteOrderMark)) // all, for else the next reading would drop more
        line.erase(0, byteOrderMark.size());
    return toUtf8(line);
}

void readFile(const std::string& path, const std::function<void(std::istream&)>& read)
{
    const fs::path file = utf8Path(path);
    std::error_code error;
    if (fs::is_directory(file, error))
        throw FileError(inQuotes(path) + " can't be read: it is a folder");
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw FileError(inQuotes(path) + " can't be read: " + failureReason(file, errno));
    read(stream);
}

std::string contentOf(const std::string& path)
{
    std::string content;
    readFile(path, [&](std::istream& stream) {
        content.assign(std::istreambuf_iterator<char>(stream), {});
        if (stream.bad())
            throw FileError(inQuotes(path) + " can't be read");
    });
    return content;
}

std::string behindLink(const std::string& path)
{
    std::error_code error;
    const fs::path file = utf8Path(path);
    const fs::path behind = fs::is_symlink(file, error) ? fs::canonical(file, error) : fs::path();
    return error || behind.empty() ? path : utf8Text(behind);
}

std::string newNameBeside(const std::string& path)
{
    static std::mt19937 random{std::random_device{}()};
    return path + "." + std::to_string(random()) + ".tmp";
}

void publishFile(const std::string& finished, const std::string& path)
{
    const fs::path from = utf8Path(finished);
    const fs::path to = utf8Path(path);
    std::error_code error;
    const bool isEmptyFile =
        fs::is_regular_file(fs::symlink_status(to, error)) && fs::file_size(to, error) == 0;
    const std::string why = isEmptyFile ? takePlace(from, to) : takeFreeName(from, to);
    if (!why.empty())
        throw FileError(inQuotes(path) + " can't be made: " + why);
}

void requireWritable(const std::string& path)
{
    const Target target = targetOf(path);
    if (!target.isReplaced())
        return;
    const fs::path fresh = utf8Path(newNameBeside(utf8Text(target.file)));
    writeAll(fresh, path, [](std::ostream&) {});
    std::error_code ignored;
    fs::remove(fresh, ignored);
}

void replaceFile(const std::string& path, const std::function<void(std::ostream&)>& write)
{
    const Target target = targetOf(path);
    if (!target.isReplaced()) {
        writeAll(target.file, path, write);
        return;
    }
    std::error_code error;
    const fs::path fresh = utf8Path(newNameBeside(utf8Text(target.file)));
    try {
        writeAll(fresh, path, write);
        if (fs::exists(target.old))
            fs::permissions(fresh, target.old.permissions(), error);
        if (const std::string why = takePlace(fresh, target.file); !why.empty())
            throw FileError(inQuotes(path) + " can't be written: " + why);
    } catch (...) {
        if (!fs::exists(target.old) || fs::exists(target.file, error)) // else it is all that is left
            fs::remove(fresh, error);
        throw;
    }
}

void appendToFile(const std::string& path, std::string_view text)
{
    std::error_code error;
    const bool isAdded = fs::is_regular_file(utf8Path(path), error);
    replaceFile(path, [&](std::ostream& stream) {
        if (isAdded) {
            readFile(path, [&](std::istream& old) {
                if (old.peek() != std::istream::traits_type::eof())
                    stream << old.rdbuf();
                if (old.bad())
                    throw FileError(inQuotes(path) + " can't be read to its end");
            });
        }
        stream << text;
    });
}

} // namespace zint
