#pragma once

#include "sim/simulationOptions.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// What each parameter of the standard tells of a simulated vehicle at one moment, field by field.
///
/// The figures are worked out by hand from the drive cycle and the model of the engine, in the units of the
/// standard; neither the vehicle's bytes nor the program's decoding had a part in them.
namespace zint {

inline constexpr std::chrono::milliseconds figuredMoment{634'500};

/// A vehicle that stands still at that moment, 84.5 s into a round, when it has begun to brake: that of
/// zint-sim --protocol can --all-parameters (or --four-banks) --moment 634500.
inline VehicleOptions figuredVehicle(bool fourBanks)
{
    return {.protocol = VehicleProtocol::can,
            .allParameters = true,
            .fourBanks = fourBanks,
            .moment = figuredMoment};
}

/// A field's value: a number, or words; or `untold` for one that the vehicle does not have.
struct Figure {
    Figure(double value) : number(value) {}
    Figure(int value) : number(value) {}
    Figure(std::string_view text) : words(text) {}
    Figure(const char* text) : words(text) {}

    bool isTold() const { return number || !words.empty(); }

    std::optional<double> number;
    std::string_view words;
    double tolerance = -1; ///< negative: that of the parameter
};

inline const Figure untold{std::string_view{}};

inline Figure within(double number, double tolerance)
{
    Figure figure(number);
    figure.tolerance = tolerance;
    return figure;
}

enum class Banks { either, two, four };

/// In the order of the table's rows.
struct ParameterFigures {
    std::uint8_t pid;
    Banks banks;      ///< of the vehicle that tells this
    double tolerance; ///< half a step of the raw value
    std::vector<Figure> fields;
};

inline const std::vector<ParameterFigures>& parameterFigures()
{
    using enum Banks;
    static const std::vector<ParameterFigures> figures = {
        {0x01, either, 0, {"on", 3, "spark", "Evaporative system, EGR / VVT"}},
        {0x02, either, 0, {"P0133"}},
        {0x03, either, 0, {"closed loop", "no second system"}},
        {0x04, either, 0.19804, {25.646}},
        {0x05, either, 0.505, {87.151}},
        {0x06, two, 0.39453, {-2.73861}},
        {0x06, four, 0.39453, {-2.73861, 1.16139}},
        {0x07, two, 0.39453, {3.1}},
        {0x07, four, 0.39453, {3.1, 5.5}},
        {0x08, two, 0.39453, {2.73861}},
        {0x08, four, 0.39453, {2.73861, -1.96139}},
        {0x09, two, 0.39453, {-1.6}},
        {0x09, four, 0.39453, {-1.6, -3.9}},
        {0x0A, either, 1.515, {362.823}},
        {0x0B, either, 1.01, {37.831}},
        {0x0C, either, 0.12625, {2654.661}},
        {0x0D, either, 0.505, {99.713}},
        {0x0E, either, 0.2525, {23.875}},
        {0x0F, either, 0.505, {23.975}},
        {0x10, either, 0.0101, {13.056}},
        {0x11, either, 0.19804, {21.734}},
        {0x12, either, 0, {"into the atmosphere, or off"}},
        {0x13,
         two,
         0,
         {"bank 1 sensor 1, bank 1 sensor 2, bank 1 sensor 3, bank 1 sensor 4, bank 2 sensor 1, bank 2 "
          "sensor 2, bank 2 sensor 3, bank 2 sensor 4"}},
        {0x14, either, 0.00252, {0.56034, within(-2.73861, 0.39453)}},
        {0x15, either, 0.00252, {0.46464, "not used for trim"}},
        {0x16, either, 0.00252, {0.50464, "not used for trim"}},
        {0x17, either, 0.00252, {0.52464, "not used for trim"}},
        {0x18, either, 0.00252, {0.33966, within(2.73861, 0.39453)}},
        {0x19, either, 0.00252, {0.56464, "not used for trim"}},
        {0x1A, either, 0.00252, {0.58464, "not used for trim"}},
        {0x1B, either, 0.00252, {0.60464, "not used for trim"}},
        {0x1C, either, 0, {"OBD II (CARB)"}},
        {0x1D,
         four,
         0,
         {"bank 1 sensor 1, bank 1 sensor 2, bank 2 sensor 1, bank 2 sensor 2, bank 3 sensor 1, bank 3 "
          "sensor 2, bank 4 sensor 1, bank 4 sensor 2"}},
        {0x1E, either, 0, {"off"}},
        {0x1F, either, 0, {634}},
        {0x21, either, 0, {1304}},
        {0x22, either, 0.0404, {412.169}},
        {0x23, either, 5.05, {63339.598}},
        {0x24, either, 0.0002, {1.00685, 1.72614}},
        {0x25, either, 0.0002, {1.01685, 2.02614}},
        {0x26, either, 0.0002, {1.02685, 2.32614}},
        {0x27, either, 0.0002, {1.03685, 2.62614}},
        {0x28, either, 0.0002, {1.04685, 2.92614}},
        {0x29, either, 0.0002, {1.05685, 3.22614}},
        {0x2A, either, 0.0002, {1.06685, 3.52614}},
        {0x2B, either, 0.0002, {1.07685, 3.82614}},
        {0x2C, either, 0.19804, {12}},
        {0x2D, either, 0.39453, {-1.6}},
        {0x2E, either, 0.19804, {18}},
        {0x2F, either, 0.19804, {60.943}},
        {0x30, either, 0.505, {7.54406}},
        {0x31, either, 0, {1304}},
        {0x32, either, 0.12625, {-120.5}},
        {0x33, either, 0, {99}},
        {0x34, either, 0.00202, {1.00685, -1.31535}},
        {0x35, either, 0.00202, {1.01685, -0.91535}},
        {0x36, either, 0.00202, {1.02685, -0.51535}},
        {0x37, either, 0.00202, {1.03685, -0.11535}},
        {0x38, either, 0.00202, {1.04685, 0.28465}},
        {0x39, either, 0.00202, {1.05685, 0.68465}},
        {0x3A, either, 0.00202, {1.06685, 1.08465}},
        {0x3B, either, 0.00202, {1.07685, 1.48465}},
        {0x3C, either, 0.0505, {496.938}},
        {0x3D, either, 0.0505, {486.938}},
        {0x3E, either, 0.0505, {436.938}},
        {0x3F, either, 0.0505, {426.938}},
        {0x41, either, 0, {"Evaporative system, EGR / VVT"}},
        {0x42, either, 0.00051, {14.001}},
        {0x43, either, 0.19804, {23.081}},
        {0x44, either, 0.00004, {1.00685}},
        {0x45, either, 0.19804, {10.734}},
        {0x46, either, 0.505, {21}},
        {0x47, either, 0.19804, {23.734}},
        {0x48, either, 0.19804, {16.867}},
        {0x49, either, 0.19804, {21.734}},
        {0x4A, either, 0.19804, {10.867}},
        {0x4B, either, 0.19804, {19.867}},
        {0x4C, either, 0.19804, {21.734}},
        {0x4D, either, 0.505, {1810.575}},
        {0x4E, either, 0.505, {1810.575}},
        {0x4F, two, 0, {0, 0, 0, 0}},
        {0x4F, four, 0, {4, 16, 64, 510}},
        {0x50, two, 0, {0}},
        {0x50, four, 0, {1310}},
        {0x51, either, 0, {"gasoline"}},
        {0x52, either, 0.19804, {8.5}},
        {0x53, either, 0.00252, {97.903}},
        {0x54, either, 0.505, {-219.713}},
        {0x55, two, 0.39453, {1.6}},
        {0x55, four, 0.39453, {1.6, -3.1}},
        {0x56, two, 0.39453, {-1.6}},
        {0x56, four, 0.39453, {-1.6, 4.7}},
        {0x57, two, 0.39453, {3.9}},
        {0x57, four, 0.39453, {3.9, -5.5}},
        {0x58, two, 0.39453, {-4.7}},
        {0x58, four, 0.39453, {-4.7, 6.3}},
        {0x59, either, 5.05, {63439.598}},
        {0x5A, either, 0.19804, {12.476}},
        {0x5B, either, 0.19804, {48.029}},
        {0x5C, either, 0.505, {93.151}},
        {0x5D, either, 0.00395, {13.499}},
        {0x5E, either, 0.02525, {3.91676}},
        {0x5F, either, 0, {"Euro VI"}},
        {0x61, either, 0.505, {13.646}},
        {0x62, either, 0.505, {10.646}},
        {0x63, either, 0, {350}},
        {0x64, either, 0, {15, 35, 75, 95, 100}},
        {0x65, either, 0, {"off", "forward or reverse", "in gear", "off", 5}},
        {0x66, either, 0.01578, {7.83351, 5.22234}},
        {0x67, either, 0.505, {87.151, 78.151}},
        {0x68, either, 0.505, {23.975, 38.975, 45.975, 26.975, 41.975, 48.975}},
        {0x69,
         either,
         0.19804,
         {14.565, 11.652, within(-20, 0.39453), 8.73875, 10.195, within(16.7, 0.39453)}},
        {0x6A, either, 0.19804, {18.734, 10.734, 16.734, 8.73351}},
        {0x6B, two, 0.505, {117.646, untold, 111.646, untold, 114.646, untold, 105.646, untold}},
        {0x6B, four, 2.02, {untold, 345.646, untold, 305.646, untold, 325.646, untold, 265.646}},
        {0x6C, either, 0.19804, {21.734, 10.734, 25.734, 14.734}},
        {0x6D, either, 5.05, {63339.598, 63189.598, 48, 63039.598, 62869.598, 53}},
        {0x6E, either, 5.05, {10025.834, 9965.834, 9895.834, 9815.834}},
        {0x6F, two, 0.505, {96.718, untold, 93.718, untold}},
        {0x6F, four, 4.04, {untold, 96.718, untold, 80.718}},
        {0x70, either, 0.01578, {120.517, 118.517, 119.517, 116.517, "closed loop", "open loop"}},
        {0x71, either, 0.19804, {57.177, 55.177, 53.177, 50.177, "open loop", "closed loop"}},
        {0x72, either, 0.19804, {6.41146, 8.41146, 10.411, 12.411}},
        {0x73, either, 0.00505, {104.206, 105.706}},
        {0x74, either, 5.05, {55645.845, 53645.845}},
        {0x75, either, 0.505, {27.975, 83.975, 523.875, 458.875}},
        {0x76, either, 0.505, {20.975, 76.975, 516.875, 451.875}},
        {0x77, either, 0.505, {35.975, 38.975, 41.975, 44.975}},
        {0x78, either, 0.0505, {533.875, 483.875, 423.875, 363.875}},
        {0x79, either, 0.0505, {525.875, 472.875, 414.875, 350.875}},
        {0x7A, either, 0.00505, {2.05167, 103.452, 101.4}},
        {0x7B, either, 0.00505, {-0.4, 101.256, 101.656}},
        {0x7C, either, 0.0505, {343.875, 318.875, 331.875, 300.875}},
        {0x7D, either, 0, {"inside the control area"}},
        {0x7E, either, 0, {"inside the control area, inside the deficiency area"}},
        {0x7F, either, 0, {5432734, 776104, 4321}},
        {0x81, either, 0, {100634, 70, 200634, 140, 300634, 210, 400634, 280, 500634, "not used"}},
        {0x82, either, 0, {600634, 420, 700634, 490, 800634, 560, 900634, 630, 1000634, "not used"}},
        {0x83, either, 0.505, {231.292, 41, 222.292, 37}},
        {0x84, either, 0.505, {74.721}},
        {0x85, either, 0.00252, {0.26112, 0.37417, within(71, 0.19804), 7200}},
        {0x86, either, 0.00631, {3.14115, 2.14115}},
        {0x87, either, 0.01578, {37.831, 35.831}},
        {0x88,
         either,
         0,
         {"reagent low", "reagent low", "consumption deviates", "none", "wrong reagent", 12, 6543, 350, 47,
          5}},
        {0x89, either, 0, {1100634, 770, 1200634, 840, 1300634, 910, 1400634, 980, 1500634, "not used"}},
        {0x8A, either, 0, {1600634, 1120, 1700634, 1190, 1800634, 1260, 1900634, 1330, 2000634, "not used"}},
        {0x8B, either, 0.19804, {"no", "active", "adsorbing", "in progress", 62.635, 412, 530}},
        {0x8C, either, 0.00081, {1.2, 0.4, 1.5, 0.7, 1.00685, 1.01685, 1.02685, 1.03685}},
        {0x8D, either, 0.19804, {28.734}},
        {0x8E, either, 0.505, {13.309}},
        {0x8F, either, 0.00505, {"measuring", 15.065, "regenerating", -1.25}},
        {0x90, either, 0, {"discriminatory", "continuous", "not complete", 30}},
        {0x91, either, 0, {"continuous", 30, 195}},
        {0x92, either, 0, {"yes", "no", "yes", "yes", "no", "yes", "no", "no"}},
        {0x93, either, 0, {57}},
        {0x94,
         either,
         0,
         {"inactive", "enabled", "active", "not supported", 11, 23, 35, "not supported", 47}},
        {0x98, either, 0.0505, {333.875, 312.875, 290.875, 267.875}},
        {0x99, either, 0.0505, {326.875, 304.875, 281.875, 257.875}},
        {0x9A, either, 0.0505, {"charge depleting", "charge increasing", 297.971, -39.885}},
        {0x9B, either, 0.505, {1, 32.5, 28.975, 68}},
        {0x9C, either, 0.00081, {3.2, 2.4, 3.5, 2.7, 1.20685, 1.21685, 1.22685, 1.23685}},
        {0x9D, either, 0.0101, {0.88815, 0.97697}},
        {0x9E, either, 0.101, {50.291}},
        {0x9F, either, 0.19804, {85, 15, 81, 19, 77, 23, 73, 27}},
        {0xA1, either, 0.505, {221.292, 39, 214.292, 33}},
        {0xA2, either, 0.01578, {18.823}},
        {0xA3, two, 0.12625, {-120.5, untold, 80.25, untold}},
        {0xA3, four, 1.01, {untold, -12000, untold, 9000}},
        {0xA4, either, 0.00051, {5, 0.84}},
        {0xA5, either, 0.00025, {within(26.411, 0.2525), 0.15862}},
        {0xA6, either, 0.0505, {124760.7}},
    };
    return figures;
}

} // namespace zint
