// Writes the man page and the completion of the command line. Usage: zint-obd-documents MAN-PAGE COMPLETION

#include "commands/commandLine.h"
#include "documents.h"

#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

bool write(const std::filesystem::path& path, const std::string& text)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    return static_cast<bool>(file << text << std::flush);
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 3) {
        std::cerr << "usage: zint-obd-documents MAN-PAGE COMPLETION\n";
        return 2;
    }
    const zint::CommandLine line;
    const bool isWritten =
        write(argv[1], zint::manPage(line.program())) && write(argv[2], zint::bashCompletion(line.program()));
    return isWritten ? 0 : 1;
}
