#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zint {

/// Makes small databases of the Access engine, byte by byte: a catalog and one table with three fields.
///
/// Pages: 0 header, 1 (unused), 2 definition of the catalog, 3 page maps, 4 the catalog's rows, 5 definition
/// of the table, from 6 on its rows. There are no indexes; readers of whole tables need none.
class AccessFile {
public:
    enum class Jet { three, four };
    enum FieldType : std::uint8_t { integer = 3, longInteger = 4, text = 10, memo = 12 };

    struct Field {
        std::string name;
        FieldType type = text;
        unsigned size = 255; // in characters
    };
    using Row = std::vector<std::optional<std::string>>; // UTF-8; nothing is null

    Jet jet = Jet::four;
    std::uint32_t key = 0; // other than 0: the pages are enciphered with it
    std::string table = "DTCset";
    std::vector<Field> fields{{"Code", text, 5}, {"Description", text, 100}, {"Notes", text, 255}};
    std::vector<Row> rows;
    std::vector<std::size_t> deleted; // which of the rows are marked as deleted

    std::size_t pageSize() const { return jet == Jet::three ? 2048 : 4096; }

    std::string bytes() const
    {
        std::vector<std::vector<std::string>> dataPages(1);
        std::vector<std::vector<bool>> deletedRows(1);
        std::size_t used = 0;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const std::string row = rowBytes(fields, rows[i]);
            if (used + row.size() + 2 > pageSize() - 14) {
                dataPages.emplace_back();
                deletedRows.emplace_back();
                used = 0;
            }
            used += row.size() + 2;
            dataPages.back().push_back(row);
            deletedRows.back().push_back(std::ranges::count(deleted, i) != 0);
        }
        std::vector<unsigned> numbers(dataPages.size());
        std::iota(numbers.begin(), numbers.end(), 6U);

        const std::vector<Field> catalog{{"Id", longInteger, 4}, {"Name", text, 64}, {"Type", integer, 2}};
        const std::string catalogId = little(2, 4);
        const std::string tableId = little(5, 4);
        const std::string tableType = little(1, 2);
        std::string file = header();
        file += dataPage(0, {pageMap({})}, {false});
        file += definition(catalog, 2, 'S', 0);
        file += dataPage(0, {pageMap({4}), pageMap({}), pageMap(numbers), pageMap({})}, std::vector<bool>(4));
        file += dataPage(2,
                         {rowBytes(catalog, {catalogId, "MSysObjects", tableType}),
                          rowBytes(catalog, {tableId, table, tableType})},
                         std::vector<bool>(2));
        file += definition(fields, rows.size() - deleted.size(), 'N', 2);
        for (std::size_t i = 0; i < dataPages.size(); ++i)
            file += dataPage(5, dataPages[i], deletedRows[i]);
        for (std::size_t page = 1; key != 0 && page < file.size() / pageSize(); ++page)
            file.replace(page * pageSize(), pageSize(),
                         enciphered(file.substr(page * pageSize(), pageSize()),
                                    key ^ static_cast<std::uint32_t>(page)));
        return file;
    }

private:
    bool isJet3() const { return jet == Jet::three; }

    static std::string little(std::uint64_t number, std::size_t size)
    {
        std::string result;
        for (std::size_t i = 0; i < size; ++i)
            result += i < 8 ? static_cast<char>((number >> (8 * i)) & 0xFFU) : '\0';
        return result;
    }

    static std::uint8_t byteOf(char character) { return static_cast<std::uint8_t>(character); }

    /// RC4
    static std::string enciphered(std::string text, std::uint32_t key)
    {
        const std::string keyBytes = little(key, 4);
        std::array<std::uint8_t, 256> state{};
        std::iota(state.begin(), state.end(), std::uint8_t{0});
        std::uint8_t j = 0;
        for (std::size_t i = 0; i < state.size(); ++i) {
            j = static_cast<std::uint8_t>(j + state[i] + byteOf(keyBytes[i % 4]));
            std::swap(state[i], state[j]);
        }
        std::uint8_t i = 0;
        j = 0;
        for (char& character : text) {
            i = static_cast<std::uint8_t>(i + 1);
            j = static_cast<std::uint8_t>(j + state[i]);
            std::swap(state[i], state[j]);
            const auto sum = static_cast<std::uint8_t>(state[i] + state[j]);
            character = static_cast<char>(byteOf(character) ^ state[sum]);
        }
        return text;
    }

    /// The characters of UTF-8 text, of which only those below U+10000 are used.
    static std::vector<std::uint16_t> characters(std::string_view utf8)
    {
        std::vector<std::uint16_t> result;
        for (std::size_t i = 0; i < utf8.size();) {
            const std::uint8_t lead = byteOf(utf8[i++]);
            const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : 2;
            unsigned character = more == 0 ? lead : more == 1 ? lead & 0x1FU : lead & 0x0FU;
            for (int k = 0; k < more; ++k)
                character = (character << 6U) | (byteOf(utf8[i++]) & 0x3FU);
            result.push_back(static_cast<std::uint16_t>(character));
        }
        return result;
    }

    /// Names are never compressed; values are where all their characters fit into a byte.
    std::string textBytes(std::string_view utf8, bool compress) const
    {
        std::string narrow;
        std::string wide;
        for (const std::uint16_t character : characters(utf8)) {
            wide += little(character, 2);
            narrow += character < 0x100     ? static_cast<char>(character)
                      : character == 0x2013 ? '\x96' // en dash in code page 1252
                                            : '?';
        }
        if (isJet3())
            return narrow;
        const bool fits = narrow.size() > 2 && wide.size() == 2 * narrow.size() &&
                          std::ranges::all_of(characters(utf8), [](std::uint16_t c) { return c < 0x100; });
        return compress && fits ? "\xFF\xFE" + narrow : wide;
    }

    std::string header() const
    {
        std::string page(pageSize(), '\0');
        page.replace(0, 4, little(0x100, 4));
        page.replace(4, 15, "Standard Jet DB");
        page[0x14] = isJet3() ? '\0' : '\x01';
        page.replace(0x3A, 2, little(0x409, 2));
        page.replace(0x3C, 2, little(1252, 2));
        page.replace(0x3E, 4, little(key, 4));
        const std::size_t hidden = isJet3() ? 126 : 128;
        page.replace(0x18, hidden, enciphered(page.substr(0x18, hidden), 0x6B39DAC7));
        return page;
    }

    std::string pageMap(const std::vector<unsigned>& pages) const
    {
        std::string bits(isJet3() ? 128 : 64, '\0');
        for (const unsigned page : pages)
            bits[page / 8] = static_cast<char>(byteOf(bits[page / 8]) | (1U << (page % 8)));
        return std::string(5, '\0') + bits;
    }

    std::string dataPage(std::uint32_t owner, const std::vector<std::string>& contents,
                         const std::vector<bool>& gone) const
    {
        std::string start = little(0x101, 2) + little(0, 2) + little(owner, 4) + little(0, isJet3() ? 0 : 4) +
                            little(contents.size(), 2);
        std::string end;
        for (std::size_t i = 0; i < contents.size(); ++i) {
            end.insert(0, contents[i]);
            start += little((pageSize() - end.size()) | (gone[i] ? 0xC000U : 0U), 2);
        }
        start.replace(2, 2, little(pageSize() - start.size() - end.size(), 2));
        return start + std::string(pageSize() - start.size() - end.size(), '\0') + end;
    }

    static bool isFixed(const Field& field) { return field.type == integer || field.type == longInteger; }

    std::string definition(const std::vector<Field>& columns, std::size_t count, char kind,
                           unsigned map) const
    {
        const auto varying = static_cast<std::size_t>(
            std::ranges::count_if(columns, [](const Field& column) { return !isFixed(column); }));
        std::string block =
            isJet3() ? little(count, 4) + little(0, 4)
                     : little(1625, 4) + little(count, 4) + little(0, 4) + little(1, 4) + little(0, 12);
        block += kind + little(columns.size(), 2) + little(varying, 2) + little(columns.size(), 2) +
                 little(0, 8) + little(0x300 + map, 4) + little(0x301 + map, 4);
        std::size_t fixedOffset = 0;
        std::size_t varyingNumber = 0;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const Field& column = columns[i];
            const std::size_t size = isFixed(column) || isJet3() ? column.size : 2 * column.size;
            const std::string number = little(i, 2);
            block += static_cast<char>(column.type) + little(1625, isJet3() ? 0 : 4) + number +
                     little(varyingNumber, 2) + number + little(0x409, 2);
            block += isJet3() ? little(1252, 4) : little(0, 2);
            block += isFixed(column) ? '\3' : '\2';
            block += isJet3() ? "" : little(1, 5);
            block += little(isFixed(column) ? fixedOffset : 0, 2) + little(column.type == memo ? 0 : size, 2);
            (isFixed(column) ? fixedOffset : varyingNumber) += isFixed(column) ? column.size : 1;
        }
        for (const Field& column : columns) {
            const std::string name = textBytes(column.name, false);
            block += little(name.size(), isJet3() ? 1 : 2) + name;
        }
        block += "\xFF\xFF";
        std::string page = little(0x102, 2) + (isJet3() ? "VC" : little(pageSize() - 12 - block.size(), 2)) +
                           little(0, 4) + little(12 + block.size(), 4) + block;
        page.resize(pageSize());
        return page;
    }

    std::string rowBytes(const std::vector<Field>& columns, const Row& values) const
    {
        std::string row = little(columns.size(), isJet3() ? 1 : 2);
        std::string rest;
        std::vector<std::size_t> offsets;
        std::uint8_t present = 0;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (values[i])
                present = static_cast<std::uint8_t>(present | 1U << i);
            if (isFixed(columns[i]))
                row += *values[i];
        }
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (isFixed(columns[i]))
                continue;
            offsets.push_back(row.size());
            if (!values[i])
                continue;
            const std::string value = textBytes(*values[i], true);
            if (columns[i].type == memo) // within the row
                row += little(value.size() | 0x80000000U, 4) + little(0, 8);
            row += value;
        }
        const std::size_t count = offsets.size();
        offsets.push_back(row.size());
        for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset)
            rest += little(*offset & (isJet3() ? 0xFFU : 0xFFFFU), isJet3() ? 1 : 2);
        if (isJet3()) { // offsets have a byte: which of them is the first beyond 256, 512 and so on
            const std::size_t size = row.size() + rest.size() + 2;
            std::size_t jumps = (size - 1) / 256;
            jumps = (size + jumps - 1) / 256;
            for (std::size_t jump = jumps; jump > 0; --jump) {
                std::size_t first = 0;
                while (first < offsets.size() && offsets[first] < 256 * jump)
                    ++first;
                rest += first < offsets.size() ? static_cast<char>(first) : '\xFF';
            }
        }
        return row + rest + little(count, isJet3() ? 1 : 2) + static_cast<char>(present);
    }
};

} // namespace zint
