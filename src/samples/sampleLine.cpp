#include "samples/sampleLine.h"

#include "catalogue/eventValue.h"
#include "shared/csvText.h"
#include "shared/runTimeError.h"

#include <nlohmann/json.hpp>
#include <variant>

namespace zint {
namespace {

std::string jsonText(std::string_view text)
{
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

/// What a converted value is in JSON.
struct JsonValue {
    std::string operator()(std::int32_t number) const { return std::to_string(number); }
    std::string operator()(converted::WithoutUnit value) const { return std::to_string(value.number); }
    std::string operator()(converted::Hexadecimal value) const { return std::to_string(value.number); }
    std::string operator()(converted::Placeholder words) const { return "null,\"text\":" + jsonText(words); }
    std::string operator()(double number) const { return decimal(number); }
    std::string operator()(converted::Rounded number) const { return decimal(number); }
    std::string operator()(const converted::Words& words) const
    {
        return decimal(converted::Rounded{words.number, 0}) + ",\"text\":" + jsonText(words.text);
    }

private:
    static std::string decimal(const converted::Value& number)
    {
        std::string text;
        appendValue(text, number);
        return text;
    }
};

} // namespace

std::string csvSampleHead(Decimals decimals)
{
    const char separator = csvSeparator(decimals);
    return std::string("Time (s)") + separator + "Event" + separator + "Value" + separator + "Unit\n";
}

std::string csvSampleLine(const DesignEntry& event, double value, SampleTime time, Decimals decimals)
{
    const char separator = csvSeparator(decimals);
    std::string line = csvSeconds(time, decimals) + separator + csvField(event.name()) + separator;
    appendCsvValue(line, event, value, decimals);
    return line + separator + csvField(unitNameOf(event)) + '\n';
}

std::string jsonSampleLine(const DesignEntry& event, double value, SampleTime time)
{
    std::string shown;
    try {
        shown = std::visit(JsonValue(), convertedValue(event, value));
    } catch (const RunTimeError& overflow) {
        shown = "null,\"text\":" + jsonText(overflow.what());
    }
    return "{\"time\":" + csvSeconds(time, Decimals::point) + ",\"code\":" + jsonText(event.code) +
           ",\"name\":" + jsonText(event.name()) + ",\"value\":" + shown +
           ",\"unit\":" + jsonText(unitNameOf(event)) + "}\n";
}

} // namespace zint
