#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace zint {

/// What a fuzz target is given, taken piece by piece.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size)
    {
    }

    bool empty() const { return rest_.empty(); }

    /// The next byte; 0 at the end.
    std::uint8_t takeByte() { return empty() ? 0 : static_cast<std::uint8_t>(take(1)[0]); }

    /// At most so many characters.
    std::string_view take(std::size_t count)
    {
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(taken.size());
        return taken;
    }

    /// The next line without its line feed.
    std::string_view takeLine()
    {
        const std::string_view line = take(rest_.find('\n'));
        take(1);
        return line;
    }

    std::string_view rest() const { return rest_; }

private:
    std::string_view rest_;
};

/// Stops the run with the words of what must always hold.
inline void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "\nDoes not hold: %s\n", what);
    std::abort();
}

} // namespace zint
