#include "shared/outputFile.h"

#include "shared/module1.h"
#include "shared/textFile.h"

namespace zint {

OutputFile::Target OutputFile::choose(Way way, Name name) const
{
    if (name == Name::usual && !values_.parmOutput.empty())
        return {.path = values_.parmOutput, .way = way};
    const auto ask = way == Way::append ? &FileDialogs::chooseToAppend : &FileDialogs::chooseToSave;
    return {.path = (dialogs_.*ask)(textFileKinds, values_.parmInitDir, values_.parmOutputFile),
            .way = way,
            .isChosen = true};
}

std::string OutputFile::write(const Target& target, const std::string& text)
{
    const std::string lines = text + std::string(lineEnd);
    if (target.way == Way::append)
        appendToFile(target.path, lines);
    else
        replaceFile(target.path, [&lines](std::ostream& stream) { stream << lines; });
    if (target.isChosen) {
        values_.rememberFolderOf(target.path);
        values_.parmOutput = target.path;
        values_.parmOutputFile = fileNamePart(target.path);
    }
    return values_.parmOutputFile + " saved";
}

} // namespace zint
