#include "sim/unitKind.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

constexpr UnitAddress engineAddress{.address = 0x10, .number = 0};
constexpr UnitAddress transmissionAddress{.address = 0x18, .number = 1};

constexpr std::array<UnitTraits, 6> unitTable{{
    {UnitKind::spark, engineAddress, 0x07, 0x65, 0x04}, // the tank's, which takes a night
    {UnitKind::sparkNewer, engineAddress, 0x07, 0xE5, 0x84},
    {UnitKind::diesel, engineAddress, 0x0F, 0xEB, 0x42}, // the catalyst for nitrogen oxides, the filter
    {UnitKind::complete, engineAddress, 0x07, 0xEF, 0x84},
    {UnitKind::completeV, engineAddress, 0x07, 0xEF, 0x84},
    {UnitKind::transmission, transmissionAddress, 0x04, 0x00, 0x00},
}};

} // namespace

const UnitTraits& unitTraits(UnitKind kind) { return *std::ranges::find(unitTable, kind, &UnitTraits::kind); }

} // namespace zint
