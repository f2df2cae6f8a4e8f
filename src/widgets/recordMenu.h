#pragma once

#include "link/wireRecord.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <string>

class QAction;
class QLabel;
class QMainWindow;
class QMenu;

namespace zint {

/// What a window has for the record of the wire: two entries under Help, and a mark in the menu bar while a
/// recording is on. All of it outlives the menu.
class RecordMenu {
public:
    RecordMenu(QMainWindow& window, WireRecord& record, ProgramValues& values, Prompts& prompts);

    /// Adds the entries. The caller connects them to the two functions below.
    struct Entries {
        QAction* record;
        QAction* save;
    };
    Entries addTo(QMenu& help);

    /// Shows whether a recording is on.
    void refresh();

    /// Ends the recording that is on, or asks where to and begins one.
    void recordOrStop();

    /// Asks where to and saves the last exchange.
    void saveLastExchange();

private:
    struct Target {
        std::string path; ///< empty: the user has cancelled
        WireRecord::Identity identity = WireRecord::Identity::kept;
    };
    Target ask(const std::string& title);
    bool write(const Target& target, const std::function<void()>& writing);

    QMainWindow& window_;
    WireRecord& record_;
    ProgramValues& values_;
    Prompts& prompts_;
    QAction* entry_ = nullptr;
    QLabel* mark_ = nullptr;
};

} // namespace zint
