#pragma once

#include "shared/module1.h"

#include <fstream>
#include <iterator>
#include <random>

namespace zint {

/// The bytes of a file; none when there is no such file. @param path in UTF-8
inline std::string contents(const std::string& path)
{
    std::ifstream file(utf8Path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A folder that goes away with the test, with everything in it. Paths are UTF-8.
class TemporaryFolder {
public:
    TemporaryFolder() { std::filesystem::create_directories(utf8Path(path_)); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(utf8Path(path_), ignored);
    }

    const std::string& path() const { return path_; }
    std::string path(const std::string& name) const { return path_ + "/" + name; }

    static void write(const std::string& path, std::string_view bytes)
    {
        std::ofstream(utf8Path(path), std::ios::binary) << bytes;
    }

private:
    std::string path_ = (std::filesystem::temp_directory_path() / "zint-test-").string() +
                        std::to_string(std::random_device{}());
};

} // namespace zint
