#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

namespace zint {

/// A folder that goes away with the test, with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder()
        : path_(std::filesystem::temp_directory_path() /
                ("zint-test-" + std::to_string(std::random_device{}())))
    {
        std::filesystem::create_directories(path_);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    /// The path, in UTF-8, of a file or folder of this name in the folder.
    std::string path(std::string_view utf8Name = {}) const
    {
        const auto path = (path_ / std::u8string(utf8Name.begin(), utf8Name.end())).u8string();
        return {path.begin(), path.end()};
    }

    static void write(const std::string& utf8Path, std::string_view bytes)
    {
        const std::filesystem::path path(std::u8string(utf8Path.begin(), utf8Path.end()));
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

private:
    std::filesystem::path path_;
};

} // namespace zint
