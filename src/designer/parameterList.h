#pragma once

#include "catalogue/standardConversion.h"
#include "designer/designer.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// The list's columns, from the left.
enum class ParameterColumn { code, name, unit, group, supported, inDesign };

inline constexpr std::array<std::string_view, 6> parameterHeadings = {"Code",  "Name",      "Unit",
                                                                      "Group", "Supported", "In Design"};

/// What the list of parameters shows; members are named after its controls.
struct ParameterListPanel {
    struct Row {
        std::array<std::string, parameterHeadings.size()> cells;
        DesignEntry event; ///< that it becomes
    };

    std::string search;
    std::vector<std::string> groups; ///< the first one is all of them
    std::size_t group = 0;
    UnitSystem units = UnitSystem::metric;
    bool canShowSupported = false; ///< whether anything is known of the car
    bool isOnlySupported = false;
    std::vector<Row> rows;
    ParameterColumn sortedBy = ParameterColumn::code;
    bool isDescending = false;
    std::string supportHint; ///< where the marks come from, or how to get some
    std::string statusBox;   ///< how many are shown, or what was added
};

/// All parameters that can be polled: the standard's and the user's own. Found ones are added to the design.
class ParameterList {
public:
    /// Both outlive the list. The choice of units is kept in the values.
    ParameterList(Designer& designer, ProgramValues& values);

    void search(const std::string& words);
    void chooseGroup(std::size_t group);
    void chooseUnits(UnitSystem units);
    void showOnlySupported(bool only);
    void sortBy(ParameterColumn column); ///< ascending; the same column once more: the other way round

    /// Adds rows of the list to the design, which is one step to undo. @param rows their places
    /// @throws TooManyEvents when there is no room for them; none is added then
    void add(const std::vector<std::size_t>& rows);

    void refresh(); ///< design or own parameters have changed

    const ParameterListPanel& panel() const { return panel_; }
    std::function<void()> onChanged;

private:
    struct Kind;

    void addRow(DesignEntry event, const Kind& kind);
    void sort();

    Designer& designer_;
    ProgramValues& values_;
    ParameterListPanel panel_;
};

} // namespace zint
