#include "sim/unitKind.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

constexpr UnitAddress engineAddress{.address = 0x10, .header = 0x7E0};
constexpr UnitAddress transmissionAddress{.address = 0x18, .header = 0x7E1};

constexpr UnitAddress bodyAddress{.address = 0x40, .header = 0x744};

constexpr std::array<UnitTraits, 7> unitTable{{
    {UnitKind::spark, engineAddress, 0x07, 0x65, 0x04}, // the tank's, which takes a night
    {UnitKind::sparkNewer, engineAddress, 0x07, 0xE5, 0x84},
    {UnitKind::diesel, engineAddress, 0x0F, 0xEB, 0x42}, // the catalyst for nitrogen oxides, the filter
    {UnitKind::complete, engineAddress, 0x07, 0xEF, 0x84},
    {UnitKind::completeV, engineAddress, 0x07, 0xEF, 0x84},
    {UnitKind::transmission, transmissionAddress, 0x04, 0x00, 0x00},
    {UnitKind::body, bodyAddress, 0x00, 0x00, 0x00, false},
}};

} // namespace

const UnitTraits& unitTraits(UnitKind kind) { return *std::ranges::find(unitTable, kind, &UnitTraits::kind); }

} // namespace zint
