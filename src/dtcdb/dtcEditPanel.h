#pragma once

#include "dtcdb/dtcRecord.h"
#include "shared/controls.h"

#include <string>

namespace zint {

/// What the description editor shows; members are named after its controls.
struct DtcEditPanel {
    struct TextBox {
        std::string text;
        bool enabled = true;
    };

    Button DTCcontrol{.caption = "Create New DB"};
    TextBox dtcDBname; ///< browseDB is enabled with it
    std::string DTCframe = "Current DTC Record";
    DtcRecord record;       ///< what DTCcode, DTCdescr and DTCnotes show
    bool isOpen = false;    ///< they are enabled
    bool isEditing = false; ///< they can be changed; DTCsave and DTCcancel are enabled

    bool canAdd = false;        ///< DTCadd
    bool canChange = false;     ///< DTCedit and DTCdel
    bool canUndoDelete = false; ///< undoDelete
    bool canBrowse = false; ///< DTCfirst, DTCprev, DTCnext, DTClast, DTCsearch, DTCsearchCode and findWords

    std::string DTCtext;         ///< browseText belongs to it
    bool canImport = false;      ///< importDTC
    bool canExport = false;      ///< exportDTC
    bool canShowSkipped = false; ///< the last import has skipped lines
    bool canDelimNotes = true;   ///< the form of the text file leaves a choice; delimNotes
    std::string textHint;        ///< what the user had better know of the last import or export
    std::string statusBox;
};

} // namespace zint
