#pragma once

#include "parameters/designParameters.h"
#include "parameters/parametersFile.h"
#include "shared/prompts.h"

#include <string>
#include <vector>

namespace zint {

/// The user's own parameters, as the designer needs them: what the events of a design stand for, and the file
/// beside a design's that carries their definitions to others.
class DesignDefinitions {
public:
    /// @param prompts outlives this
    DesignDefinitions(ParametersFile file, Prompts& prompts);

    const ParametersFile& file() const { return file_; }
    const OwnParameters& table() const { return table_; }

    /// Reads the table again. @throws FileError when it can't be read; it is then as it was
    void reload() { table_ = file_.load(); }

    /// Gives the events their definitions. Those that had one follow its request.
    void define(std::vector<DesignEntry>& events) const;

    /// Tells why the table could not be read when this was made; once.
    void tellLoadFailure();

    /// Offers the definitions that lie beside a design's file, if the table lacks some.
    /// @return whether the design's events have other numbers now
    /// @throws FileError when the definitions can't be read, or the table can't be written
    bool takeOver(Design& design, const std::string& path);

    /// Tells which events of a design are not defined here.
    void tellUndefined(Design design);

    /// Whether a design's file has one with definitions beside it.
    static bool lieBeside(const std::string& path);

    /// Whether those that lie beside a design's file give a number of the design another meaning.
    static bool contradict(const Design& design, const std::string& path);

    /// Writes the definitions that a design uses beside its file; those that lie there and are not defined
    /// here stay. Does nothing for a design that uses none. @throws FileError
    static void saveBeside(const Design& design, const std::string& path);

private:
    ParametersFile file_;
    Prompts& prompts_;
    OwnParameters table_;
    std::string loadFailure_;
};

} // namespace zint
