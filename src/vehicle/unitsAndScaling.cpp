#include "vehicle/unitsAndScaling.h"

#include <array>

namespace zint {
namespace {

struct ScalingRow {
    std::uint8_t id;
    double factor;
    double offset;
    std::string_view unit;
};

constexpr std::array scalingRows = {
    ScalingRow{0x01, 1, 0, ""},
    ScalingRow{0x02, 0.1, 0, ""},
    ScalingRow{0x03, 0.01, 0, ""},
    ScalingRow{0x04, 0.001, 0, ""},
    ScalingRow{0x05, 0.0000305, 0, ""},
    ScalingRow{0x06, 0.000305, 0, ""},
    ScalingRow{0x07, 0.25, 0, "rpm"},
    ScalingRow{0x08, 0.01, 0, "km/h"},
    ScalingRow{0x09, 1, 0, "km/h"},
    ScalingRow{0x0A, 0.122, 0, "mV"},
    ScalingRow{0x0B, 0.001, 0, "V"},
    ScalingRow{0x0C, 0.01, 0, "V"},
    ScalingRow{0x0D, 0.00390625, 0, "mA"},
    ScalingRow{0x0E, 0.001, 0, "A"},
    ScalingRow{0x0F, 0.01, 0, "A"},
    ScalingRow{0x10, 1, 0, "ms"},
    ScalingRow{0x11, 100, 0, "ms"},
    ScalingRow{0x12, 1, 0, "s"},
    ScalingRow{0x13, 1, 0, "mΩ"},
    ScalingRow{0x14, 1, 0, "Ω"},
    ScalingRow{0x15, 1, 0, "kΩ"},
    ScalingRow{0x16, 0.1, -40, "°C"},
    ScalingRow{0x17, 0.01, 0, "kPa"},
    ScalingRow{0x18, 0.0117, 0, "kPa"},
    ScalingRow{0x19, 0.079, 0, "kPa"},
    ScalingRow{0x1A, 1, 0, "kPa"},
    ScalingRow{0x1B, 10, 0, "kPa"},
    ScalingRow{0x1C, 0.01, 0, "°"},
    ScalingRow{0x1D, 0.5, 0, "°"},
    ScalingRow{0x1E, 0.0000305, 0, "lambda"},
    ScalingRow{0x1F, 0.05, 0, "A/F"},
    ScalingRow{0x20, 0.00390625, 0, "ratio"},
    ScalingRow{0x21, 1, 0, "mHz"},
    ScalingRow{0x22, 1, 0, "Hz"},
    ScalingRow{0x23, 1, 0, "kHz"},
    ScalingRow{0x24, 1, 0, "counts"},
    ScalingRow{0x25, 1, 0, "km"},
    ScalingRow{0x26, 0.1, 0, "mV/ms"},
    ScalingRow{0x27, 0.01, 0, "g/s"},
    ScalingRow{0x28, 1, 0, "g/s"},
    ScalingRow{0x29, 0.25, 0, "Pa/s"},
    ScalingRow{0x2A, 0.001, 0, "kg/h"},
    ScalingRow{0x2B, 1, 0, "switches"},
    ScalingRow{0x2C, 0.01, 0, "g/cyl"},
    ScalingRow{0x2D, 0.01, 0, "mg/stroke"},
    ScalingRow{0x2E, 1, 0, ""},
    ScalingRow{0x2F, 0.01, 0, "%"},
    ScalingRow{0x30, 0.001526, 0, "%"},
    ScalingRow{0x31, 0.001, 0, "L"},
    ScalingRow{0x32, 0.0000305, 0, "inch"},
    ScalingRow{0x33, 0.00024414, 0, "lambda"},
    ScalingRow{0x34, 1, 0, "min"},
    ScalingRow{0x35, 10, 0, "ms"},
    ScalingRow{0x36, 0.01, 0, "g"},
    ScalingRow{0x37, 0.1, 0, "g"},
    ScalingRow{0x38, 1, 0, "g"},
    ScalingRow{0x39, 0.01, -327.68, "%"},
    ScalingRow{0x3A, 0.001, 0, "g"},
    ScalingRow{0x3B, 0.0001, 0, "g"},
    ScalingRow{0x3C, 0.1, 0, "µs"},
    ScalingRow{0x3D, 0.01, 0, "mA"},
    ScalingRow{0x3E, 0.00006103516, 0, "mm²"},
    ScalingRow{0x3F, 0.01, 0, "L"},
    ScalingRow{0x40, 1, 0, "ppm"},
    ScalingRow{0x41, 0.01, 0, "µA"},
    ScalingRow{0x42, 0.1, 0, "kJ"},
    ScalingRow{0x43, 0.00024414, 0, "g/kWh"},
    ScalingRow{0x81, 1, 0, ""},
    ScalingRow{0x82, 0.1, 0, ""},
    ScalingRow{0x83, 0.01, 0, ""},
    ScalingRow{0x84, 0.001, 0, ""},
    ScalingRow{0x85, 0.0000305, 0, ""},
    ScalingRow{0x86, 0.000305, 0, ""},
    ScalingRow{0x87, 1, 0, "ppm"},
    ScalingRow{0x8A, 0.122, 0, "mV"},
    ScalingRow{0x8B, 0.001, 0, "V"},
    ScalingRow{0x8C, 0.01, 0, "V"},
    ScalingRow{0x8D, 0.00390625, 0, "mA"},
    ScalingRow{0x8E, 0.001, 0, "A"},
    ScalingRow{0x8F, 1, 0, "µs"},
    ScalingRow{0x90, 1, 0, "ms"},
    ScalingRow{0x91, 100, 0, "ms"},
    ScalingRow{0x92, 0.1, 0, "N·m"},
    ScalingRow{0x96, 0.1, 0, "°C"},
    ScalingRow{0x97, 0.01, 0, "°C"},
    ScalingRow{0x98, 1, 0, "mg/stroke"},
    ScalingRow{0x99, 0.1, 0, "kPa"},
    ScalingRow{0x9C, 0.01, 0, "°"},
    ScalingRow{0x9D, 0.5, 0, "°"},
    ScalingRow{0xA8, 1, 0, "g/s"},
    ScalingRow{0xA9, 0.25, 0, "Pa/s"},
    ScalingRow{0xAD, 0.01, 0, "mg/stroke"},
    ScalingRow{0xAE, 0.1, 0, "mg/stroke"},
    ScalingRow{0xAF, 0.01, 0, "%"},
    ScalingRow{0xB0, 0.003052, 0, "%"},
    ScalingRow{0xB1, 2, 0, "mV/s"},
    ScalingRow{0xFB, 10, 0, "kPa"},
    ScalingRow{0xFC, 0.01, 0, "kPa"},
    ScalingRow{0xFD, 0.001, 0, "kPa"},
    ScalingRow{0xFE, 0.25, 0, "Pa"},
};

} // namespace

std::optional<Scaling> scalingOf(std::uint8_t id)
{
    for (const ScalingRow& row : scalingRows)
        if (row.id == id)
            return Scaling{
                .factor = row.factor, .offset = row.offset, .unit = row.unit, .isSigned = id > 0x80};
    return std::nullopt;
}

} // namespace zint
