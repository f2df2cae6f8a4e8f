#include "shared/outputFile.h"

#include "shared/module1.h"
#include "shared/textFile.h"

namespace zint {
namespace {

void replaceWith(const std::string& path, const std::string& text)
{
    replaceFile(path, [&text](std::ostream& stream) { stream << text; });
}

void addTo(const std::string& path, const std::string& text) { appendToFile(path, text); }

} // namespace

const OutputFile::Way OutputFile::replacing{&FileDialogs::chooseToSave, replaceWith};
const OutputFile::Way OutputFile::appending{&FileDialogs::chooseToAppend, addTo};

std::string OutputFile::save(const std::string& text)
{
    return write(text, replacing, values_.parmOutput.empty());
}

std::string OutputFile::saveAs(const std::string& text) { return write(text, replacing, true); }

std::string OutputFile::append(const std::string& text)
{
    return write(text, appending, values_.parmOutput.empty());
}

std::string OutputFile::appendAs(const std::string& text) { return write(text, appending, true); }

std::string OutputFile::write(const std::string& text, const Way& way, bool asking)
{
    std::string path = values_.parmOutput;
    if (asking)
        path = (dialogs_.*way.choose)(textFileKinds, values_.parmInitDir, values_.parmOutputFile);
    if (path.empty())
        return {};
    way.write(path, text + std::string(lineEnd)); // a name that can't be written to is not remembered
    if (asking) {
        values_.rememberFolderOf(path);
        values_.parmOutput = path;
        values_.parmOutputFile = fileNamePart(path);
    }
    return values_.parmOutputFile + " saved";
}

} // namespace zint
