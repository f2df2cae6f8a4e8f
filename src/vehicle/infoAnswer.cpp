#include "shared/module1.h"
#include "vehicle/infotypes.h"
#include "vehicle/serviceAnswers.h"

#include <algorithm>
#include <array>
#include <span>

namespace zint {
namespace {

constexpr std::size_t calibrationIdLength = 16;
constexpr std::size_t cvnLength = 4;

bool isFill(std::uint8_t byte) { return byte == 0x00 || byte == 0xFF || byte == ' '; }

bool isText(std::uint8_t byte) { return byte >= ' ' && byte <= '~'; }

BytesView withoutFill(BytesView data)
{
    while (!data.empty() && isFill(data.front()))
        data = data.subspan(1);
    while (!data.empty() && isFill(data.back()))
        data = data.first(data.size() - 1);
    return data;
}

/// A text without fill; a zero inside separates its parts and shows nothing.
std::string textIn(BytesView data)
{
    std::string text;
    for (const std::uint8_t byte : withoutFill(data)) {
        if (byte != 0)
            text += isText(byte) ? static_cast<char>(byte) : '?';
    }
    return text;
}

std::string bytesAsDigits(BytesView data)
{
    std::string text;
    for (const std::uint8_t byte : data)
        text += hexText(byte, 2);
    return text;
}

/// The last one may be shorter than it should be.
void readCalibrationIds(BytesView data, UnitReading& reading)
{
    for (; !data.empty(); data = data.subspan(std::min(data.size(), calibrationIdLength))) {
        std::string text = textIn(data.first(std::min(data.size(), calibrationIdLength)));
        if (!text.empty())
            reading.calibrationIds.push_back(std::move(text));
    }
}

void readCvns(BytesView data, UnitReading& reading)
{
    for (; data.size() >= cvnLength; data = data.subspan(cvnLength))
        reading.cvns.push_back(bytesAsDigits(data.first(cvnLength)));
}

void readCounters(BytesView data, std::span<const char* const> names, UnitReading& reading)
{
    for (std::size_t i = 0; 2 * i + 1 < data.size(); ++i) {
        std::string name = i < names.size() ? names[i] : "COUNTER" + std::to_string(i + 1);
        reading.counters.emplace_back(std::move(name), data[2 * i] * 256 + data[2 * i + 1]);
    }
}

constexpr std::array sparkCounters = {
    "OBDCOND",  "IGNCNTR",  "CATCOMP1",  "CATCOND1",  "CATCOMP2",  "CATCOND2",  "O2SCOMP1",
    "O2SCOND1", "O2SCOMP2", "O2SCOND2",  "EGRCOMP",   "EGRCOND",   "AIRCOMP",   "AIRCOND",
    "EVAPCOMP", "EVAPCOND", "SO2SCOMP1", "SO2SCOND1", "SO2SCOMP2", "SO2SCOND2",
};

constexpr std::array compressionCounters = {
    "OBDCOND",  "IGNCNTR",  "HCCATCOMP", "HCCATCOND", "NCATCOMP", "NCATCOND",
    "NADSCOMP", "NADSCOND", "PMCOMP",    "PMCOND",    "EGSCOMP",  "EGSCOND",
    "EGRCOMP",  "EGRCOND",  "BPCOMP",    "BPCOND",    "FUELCOMP", "FUELCOND",
};

/// What is neither text nor a number is shown as it is.
std::string otherText(const Infotype* infotype, BytesView data)
{
    if (infotype != nullptr && infotype->form == InfoForm::number) {
        int number = 0;
        for (const std::uint8_t byte : data.first(std::min<std::size_t>(data.size(), 2)))
            number = number * 256 + byte;
        return std::to_string(number);
    }
    const BytesView text = withoutFill(data);
    const auto isPart = [](std::uint8_t byte) { return byte == 0 || isText(byte); };
    return std::ranges::all_of(text, isPart) ? textIn(text) : bytesAsDigits(data);
}

void readInfo(std::uint8_t id, BytesView data, UnitReading& reading)
{
    const Infotype* const infotype = infotypeOf(id);
    switch (infotype != nullptr ? infotype->form : InfoForm::text) {
    case InfoForm::vin:
        if (std::string vin = textIn(data); !vin.empty())
            reading.vin = std::move(vin);
        break;
    case InfoForm::calibrationIds:
        readCalibrationIds(data, reading);
        break;
    case InfoForm::cvns:
        readCvns(data, reading);
        break;
    case InfoForm::ecuName:
        if (std::string name = textIn(data); !name.empty())
            reading.ecuName = std::move(name);
        break;
    case InfoForm::sparkCounters:
        readCounters(data, sparkCounters, reading);
        break;
    case InfoForm::compressionCounters:
        readCounters(data, compressionCounters, reading);
        break;
    case InfoForm::messageCount:
        break; // the messages themselves show it
    case InfoForm::number:
    case InfoForm::text:
        if (std::string text = otherText(infotype, data); !text.empty())
            reading.otherInfo[id] = std::move(text);
        break;
    }
}

std::size_t bitmapFillers(const ServiceAnswer& answer)
{
    constexpr std::size_t numberedBitmapLength = 6;
    const bool isNumbered = answer.bus != BusKind::can && answer.data.size() == numberedBitmapLength;
    return isNumbered && answer.data[1] == 1 ? 1 : 0;
}

} // namespace

void readVehicleInfo(const ServiceAnswer& answer, UnitReading& reading)
{
    const BytesView data = answer.data; // infotype, number of items, items
    if (!data.empty() && asksForBitmap(data[0])) {
        readBitmaps(answer, bitmapFillers(answer), reading);
        return;
    }
    if (data.size() < 2) {
        reading.isIncomplete = true;
        return;
    }
    const Infotype* const infotype = infotypeOf(data[0]);
    const BytesView content = data.subspan(2);
    const std::size_t itemLength = infotype != nullptr ? infotype->itemLength : 0;
    reading.isIncomplete = reading.isIncomplete || content.size() < data[1] * itemLength;
    readInfo(data[0], content, reading);
}

} // namespace zint
