#pragma once

#include "designer/replyReading.h"
#include "parameters/parametersFile.h"
#include "shared/fileDialogs.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// What the editor of own parameters shows.
struct OwnParametersPanel {
    std::vector<std::string> list;      ///< names
    std::optional<std::size_t> current; ///< of the list
    OwnParameter fields;                ///< of the current one, as typed
    std::string minimum;                ///< as typed
    std::string maximum;
    std::string hint;                   ///< its number, and whether the design uses it
    std::vector<ParameterFault> faults; ///< of the fields, with places in what was typed
    std::string reply;                  ///< that is tried
    std::string outcome;                ///< what comes out
    bool hasValue = false;              ///< whether that is a value
    bool canRead = false;
    std::string statusBox;
};

/// The editor of own parameters. What is typed into a parameter is saved as soon as it can be used and its
/// field is left.
class OwnParameterEditor {
public:
    using TextField = std::string OwnParameter::*;
    using RangeField = std::string OwnParametersPanel::*;

    /// What the editor asks of its surroundings; all of it outlives the editor.
    struct Surroundings {
        AdapterLine line;
        ParametersFile file;
        Prompts& prompts;
        FileDialogs& dialogs;
        ProgramValues& values;
        std::function<std::size_t(std::int32_t number)> usesOf; ///< in the present design
        std::function<void()> onStored;                         ///< the table has changed
    };

    /// @throws FileError when the table can't be read
    explicit OwnParameterEditor(Surroundings surroundings);

    void select(std::size_t row); ///< what can't be saved is asked for first
    void addNew();
    void copy();
    void remove(); ///< asks
    void importFile();
    void exportFile();

    void type(TextField field, const std::string& text);
    void typeRange(RangeField field, const std::string& text);
    void typeReply(const std::string& text);
    void leaveField(); ///< saves the parameter if it can be used

    void readFromCar();

    /// The editor is to be closed. @return false when the user wants to go on editing
    bool leave();

    const OwnParametersPanel& panel() const { return panel_; }
    std::function<void()> onChanged;

private:
    bool isNew() const { return panel_.current && panel_.fields.number == 0; }
    bool isUntouched() const;
    bool isChanged() const;
    bool store();
    std::string storeFailure();
    bool mayLeave();
    bool settle();
    void load(const OwnParameter& parameter);
    void show(std::optional<std::size_t> row);
    void begin(OwnParameter parameter);
    void forgetReply();
    std::vector<std::string> replacedNames(const std::string& text) const;
    void changeTable(const std::function<void(OwnParameters&)>& change);
    void takeRange();
    void changed();
    void showList();
    void showFaults();
    void showOutcome();

    Surroundings around_;
    ReplyReading reading_;
    OwnParameters table_;
    OwnParameter untouched_; ///< what a new one began as
    OwnParametersPanel panel_;
};

} // namespace zint
