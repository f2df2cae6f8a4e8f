#include "shared/outputFile.h"

#include "shared/textFile.h"

namespace zint {

std::string OutputFile::save(const std::string& text)
{
    return !values_.parmOutput.empty() || ask() ? write(text) : "";
}

std::string OutputFile::saveAs(const std::string& text) { return ask() ? write(text) : ""; }

std::string OutputFile::append(const std::string& text)
{
    return !values_.parmOutput.empty() || ask() ? add(text) : "";
}

std::string OutputFile::appendAs(const std::string& text) { return ask() ? add(text) : ""; }

bool OutputFile::ask()
{
    return askToSave(dialogs_, values_, textFileKinds,
                     {.path = &ProgramValues::parmOutput, .name = &ProgramValues::parmOutputFile});
}

std::string OutputFile::write(const std::string& text)
{
    replaceFile(values_.parmOutput, [&text](std::ostream& stream) { stream << text << lineEnd; });
    return savedText();
}

std::string OutputFile::add(const std::string& text)
{
    appendToFile(values_.parmOutput, text + std::string(lineEnd));
    return savedText();
}

std::string OutputFile::savedText() const { return values_.parmOutputFile + " saved"; }

} // namespace zint
