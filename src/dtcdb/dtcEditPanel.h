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
    DtcRecord record;       ///< DTCcode, DTCdescr and DTCnotes
    bool isOpen = false;    ///< they are enabled
    bool isEditing = false; ///< they can be changed; DTCsave and DTCcancel are enabled

    bool canAdd = false;    ///< DTCadd
    bool canChange = false; ///< DTCedit and DTCdel
    bool canBrowse = false; ///< DTCfirst, DTCprev, DTCnext, DTClast, DTCsearch and DTCsearchCode

    std::string DTCtext;         ///< browseText belongs to it
    bool canExchange = false;    ///< importDTC and exportDTC
    bool canShowSkipped = false; ///< the last import has skipped lines
    std::string statusBox;
};

} // namespace zint
