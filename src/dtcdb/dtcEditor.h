#pragma once

#include "dtcdb/dtcDatabase.h"
#include "dtcdb/dtcEditPanel.h"
#include "dtcdb/dtcText.h"
#include "shared/fileDialogs.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// The description editor's work: opens or makes a database, moves through its records, changes them, and
/// exchanges them with text files.
///
/// DatabaseError and FileError leave a handler when the file can't be used; what was shown and typed then
/// stays.
class DtcEditor {
public:
    /// What the editor asks of its surroundings; all of it outlives the editor.
    struct Surroundings {
        Prompts& prompts;
        FileDialogs& dialogs;
        ProgramValues& values;
        std::chrono::milliseconds patience = DtcDatabase::usualPatience; ///< while another program writes
    };

    explicit DtcEditor(Surroundings surroundings);

    void unload(); ///< the window goes away: a record that was not saved goes too

    void changeName(const std::string& path); ///< the text of dtcDBname
    void pressBrowseDb();
    void pressControl(); ///< opens, makes or closes the database

    void pressFirst();
    void pressPrev();
    void pressNext();
    void pressLast();
    void pressSearch(const std::string& code); ///< of DTCsearchCode
    void pressFindWords();                     ///< asks for words and lists the descriptions that hold them

    void pressAdd();
    void pressEdit();
    using Box = std::string DtcRecord::*;
    void type(Box box, const std::string& text); ///< while a record is edited
    void pressSave();
    void pressCancel();
    void pressDelete();
    void pressUndoDelete(); ///< until the next change

    void changeTextFile(const std::string& path); ///< the text of DTCtext
    void pressBrowseText();
    void setOptions(const DtcTextOptions& options);
    void pressImport();
    void pressExport();
    void showSkipped(); ///< of the last import

    const DtcEditPanel& panel() const { return panel_; }
    std::function<void()> onChanged; ///< called when the panel may have changed

    /// Called when a box shall get the focus. @param place of the cursor, before this character from 0 on;
    /// nothing leaves it to the box
    std::function<void(Box box, std::optional<std::size_t> place)> onFocus;

private:
    using Entry = DtcDatabase::Entry;
    struct Draft {
        DtcRecord record;
        bool isNew;
    };
    struct Focus {
        Box box;
        std::optional<std::size_t> place;
    };

    template <typename Work>
    void press(const Work& work);
    void open();
    void copyFromAccess(const std::string& path);
    void opened(const std::string& path, std::unique_ptr<DtcDatabase> database);
    void close();
    void show(std::optional<Entry> entry);
    void showNext();
    void choose(const std::vector<DtcRecord>& found);
    bool store(const DtcRecord& record);
    void endEditing(const char* status);
    void refuse(const char* why, Box box, std::optional<std::size_t> place = {});
    bool mayReplace(const std::string& path);
    void countRecords();
    void refresh();

    Surroundings around_;
    DtcEditPanel panel_;
    std::unique_ptr<DtcDatabase> database_; ///< while it is open
    std::optional<Entry> current_;          ///< the record that is shown, or to come back to
    std::optional<Draft> draft_;            ///< a record that is being added or changed
    std::optional<DtcRecord> deleted_;      ///< by the last change
    std::optional<std::int64_t> count_;     ///< of the records, when they could be counted last
    std::string note_;                      ///< stands behind the count
    std::optional<Focus> focus_;            ///< that this press gives
    std::string words_;                     ///< sought last
    std::string lastExport_;                ///< the file that it wrote
    DtcTextOptions options_;
    DtcImport import_; ///< the last one
};

} // namespace zint
