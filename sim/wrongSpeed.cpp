#include "sim/wrongSpeed.h"

#include <bitset>
#include <cstddef>

namespace zint {
namespace {

constexpr std::size_t bitsPerByte = 10;
constexpr unsigned dataBits = 8;

/// The line while bytes are sent; before and behind them it rests.
class Line {
public:
    explicit Line(std::string_view sent) : sent_(sent) {}

    std::size_t length() const { return sent_.size() * bitsPerByte; }

    /// @param time in bits of the sender
    bool isHigh(double time) const
    {
        const auto bit = static_cast<std::size_t>(time);
        if (bit >= length())
            return true;
        const std::size_t place = bit % bitsPerByte;
        if (place == 0 || place == bitsPerByte - 1)
            return place != 0;
        return std::bitset<dataBits>(static_cast<unsigned char>(sent_[bit / bitsPerByte])).test(place - 1);
    }

    /// When the line falls next; the end of the line when it does no more.
    double nextFall(double from) const
    {
        bool wasHigh = isHigh(from);
        for (auto bit = static_cast<std::size_t>(from) + 1; bit < length(); ++bit) {
            const bool high = isHigh(static_cast<double>(bit));
            if (wasHigh && !high)
                return static_cast<double>(bit);
            wasHigh = high;
        }
        return static_cast<double>(length());
    }

private:
    std::string_view sent_;
};

} // namespace

std::string heardAtOtherSpeed(std::string_view sent, int sentAt, int heardAt)
{
    const Line line(sent);
    const double bit = static_cast<double>(sentAt) / heardAt; // of the receiver, in bits of the sender
    std::string heard;
    for (double start = 0; start < static_cast<double>(line.length());) {
        unsigned byte = 0;
        for (unsigned place = 0; place < dataBits; ++place)
            byte |= (line.isHigh(start + (place + 1.5) * bit) ? 1U : 0U) << place;
        heard += static_cast<char>(byte);
        start = line.nextFall(start + (bitsPerByte - 0.5) * bit);
    }
    return heard;
}

} // namespace zint
