#include "vehicle/parameters.h"

#include "vehicle/parameterTable.h"

#include <algorithm>
#include <array>
#include <limits>

namespace zint {
namespace {

std::span<const ParameterTable> parameterTables()
{
    static const std::array tables = {basicParameters(), oxygenParameters(), engineParameters(),
                                      aftertreatmentParameters()};
    return tables;
}

std::span<const Field> fieldsOf(std::uint8_t pid)
{
    const auto isBefore = [pid](const Field& row) { return row.pids.first + row.pids.count <= pid; };
    const auto isUpTo = [pid](const Field& row) { return row.pids.first <= pid; };
    for (const ParameterTable& table : parameterTables()) {
        const auto begin = std::partition_point(table.fields.begin(), table.fields.end(), isBefore);
        const auto end = std::partition_point(begin, table.fields.end(), isUpTo);
        if (begin != end)
            return {begin, end};
    }
    return {};
}

const ParameterGroup* groupOf(std::uint8_t pid)
{
    for (const ParameterTable& table : parameterTables())
        for (const ParameterGroup& group : table.groups)
            if (group.pids.contains(pid))
                return &group;
    return nullptr;
}

std::optional<std::uint32_t> rawValue(const FieldPlace& place, BytesView data)
{
    if (place.end() > data.size())
        return std::nullopt;
    std::uint64_t raw = 0;
    for (const std::uint8_t byte : data.subspan(place.first, place.count))
        raw = raw * 256 + byte;
    return static_cast<std::uint32_t>(raw >> place.shift & ((std::uint64_t{1} << place.width) - 1));
}

bool hasBit(std::uint32_t bits, int bit) { return (bits >> bit & 1U) != 0; }

bool applies(const Field& field, BytesView data, const ParameterContext& context)
{
    if (field.supportBit >= 0 && !hasBit(data[0], field.supportBit))
        return false;
    // Bytes of padding may follow where only two banks exist.
    return !field.needsFourBanks || context.hasFourBanks || data.size() == field.place.end();
}

Formula rescaled(Formula formula, const ParameterContext& context)
{
    const FullScale& scale = *formula.fullScale;
    const Bytes& source = context.*scale.source;
    const double largest = scale.index < source.size() ? source[scale.index] * scale.step : 0;
    if (largest == 0)
        return formula;
    formula.plus = formula.plus * largest / formula.times;
    formula.times = largest;
    formula.over = scale.over;
    return formula;
}

/// Fills in what the raw value of a field says, by the kind of its meaning.
class Interpretation {
public:
    Interpretation(const FieldPlace& place, std::uint32_t raw, const ParameterContext& context,
                   ParameterValue& value)
        : width_(place.width), raw_(raw), context_(context), value_(value)
    {
    }

    void operator()(const Formula& usual) const
    {
        value_.unit = usual.unit;
        const std::int64_t end = std::int64_t{1} << width_;
        if (!usual.whenAllOnes.empty() && raw_ == end - 1) {
            value_.text = usual.whenAllOnes;
            value_.unit.clear();
            return;
        }
        const Formula formula = usual.fullScale != nullptr ? rescaled(usual, context_) : usual;
        const bool isNegative = formula.isSigned && raw_ >= end / 2;
        const auto signedRaw = static_cast<double>(isNegative ? raw_ - end : raw_);
        value_.number = signedRaw * formula.times / formula.over + formula.plus;
    }

    void operator()(const OneOf& enumeration) const
    {
        const auto word = std::ranges::find(enumeration.words, static_cast<unsigned>(raw_), &Word::value);
        value_.text = word != enumeration.words.end() ? std::string(word->text)
                                                      : "not defined (" + std::to_string(raw_) + ")";
    }

    void operator()(const AnyOf& bits) const
    {
        for (const Word& word : bits.words)
            if (hasBit(static_cast<std::uint32_t>(raw_), static_cast<int>(word.value)))
                value_.text += (value_.text.empty() ? "" : ", ") + std::string(word.text);
        if (value_.text.empty())
            value_.text = "none";
    }

    void operator()(TextOf textOf) const { value_.text = textOf(static_cast<std::uint32_t>(raw_)); }

private:
    unsigned width_;
    std::int64_t raw_;
    const ParameterContext& context_;
    ParameterValue& value_;
};

const Field* fieldAt(std::uint8_t pid, std::size_t place)
{
    const std::span<const Field> fields = fieldsOf(pid);
    return place < fields.size() ? &fields[place] : nullptr;
}

std::string fieldName(const Field& field, std::uint8_t pid, const ParameterContext& context)
{
    std::string name(field.name);
    if (field.pids.count > 1) // one parameter an oxygen sensor
        name += ", " + std::string(oxygenSensor(pid - std::size_t{field.pids.first}, context.hasFourBanks));
    return name;
}

FieldTraits traitsOf(const Field& row, std::uint8_t pid)
{
    FieldTraits told{.name = fieldName(row, pid, {})};
    const auto numbers = static_cast<double>(std::uint64_t{1} << row.place.width);
    const auto* formula = std::get_if<Formula>(&row.meaning);
    if (formula == nullptr) {
        told.hasWords = true;
        told.maximum = numbers - 1;
        return told;
    }
    const double smallest = formula->isSigned ? -numbers / 2 : 0;
    told.unit = formula->unit;
    told.step = formula->times / formula->over;
    told.minimum = smallest * told.step + formula->plus;
    told.maximum = told.minimum + (numbers - 1) * told.step;
    if (const FullScale* scale = formula->fullScale)
        told.scaledBy = scale->source == &ParameterContext::largestValues ? 0x4F : 0x50;
    return told;
}

} // namespace

std::optional<std::size_t> parameterLength(std::uint8_t pid, const ParameterContext& context)
{
    const std::span<const Field> fields = fieldsOf(pid);
    if (context.hasFourBanks && std::ranges::any_of(fields, &Field::needsFourBanks))
        return fields.back().place.end();
    if (const ParameterGroup* group = groupOf(pid))
        return group->length;
    if (fields.empty())
        return std::nullopt;
    return fields.front().place.end();
}

std::string_view parameterName(std::uint8_t pid)
{
    if (const ParameterGroup* group = groupOf(pid))
        return group->name;
    const std::span<const Field> fields = fieldsOf(pid);
    return fields.empty() ? std::string_view() : fields.front().name;
}

std::vector<ParameterValue> parameterValues(std::uint8_t pid, BytesView data, const ParameterContext& context)
{
    std::vector<ParameterValue> values;
    for (const Field& field : fieldsOf(pid)) {
        const std::optional<std::uint32_t> raw = rawValue(field.place, data);
        if (!raw || !applies(field, data, context))
            continue;
        ParameterValue& value = values.emplace_back();
        value.name = fieldName(field, pid, context);
        if (field.missingBit >= 0 && hasBit(data[0], field.missingBit))
            value.text = "not available";
        else
            std::visit(Interpretation(field.place, *raw, context, value), field.meaning);
    }
    return values;
}

const FieldTraits* parameterField(std::uint8_t pid, std::size_t field)
{
    static const std::vector<std::vector<FieldTraits>> traits = [] { // each value that is shown asks for them
        std::vector<std::vector<FieldTraits>> all(256);
        for (std::size_t parameter = 0; parameter < all.size(); ++parameter) {
            const auto number = static_cast<std::uint8_t>(parameter);
            for (const Field& row : fieldsOf(number))
                all[parameter].push_back(traitsOf(row, number));
        }
        return all;
    }();
    return field < traits[pid].size() ? &traits[pid][field] : nullptr;
}

std::optional<FieldReading> readField(std::uint8_t pid, std::size_t field, BytesView data,
                                      const ParameterContext& context)
{
    const Field* row = fieldAt(pid, field);
    const auto raw = row != nullptr ? rawValue(row->place, data) : std::nullopt;
    if (!raw)
        return std::nullopt;
    if (!applies(*row, data, context))
        return FieldReading{.words = "not supported"};
    if (row->missingBit >= 0 && hasBit(data[0], row->missingBit))
        return FieldReading{.words = "not available"};
    if (!std::holds_alternative<Formula>(row->meaning))
        return FieldReading{.number = *raw};
    ParameterValue value;
    std::visit(Interpretation(row->place, *raw, context, value), row->meaning);
    return FieldReading{value.number, value.text};
}

std::string fieldWords(std::uint8_t pid, std::size_t field, double number)
{
    const Field* row = fieldAt(pid, field);
    if (row == nullptr || std::holds_alternative<Formula>(row->meaning) || number < 0 ||
        number > std::numeric_limits<std::uint32_t>::max())
        return {};
    ParameterValue value;
    std::visit(Interpretation(row->place, static_cast<std::uint32_t>(number), {}, value), row->meaning);
    return value.text;
}

} // namespace zint
