#include "vehicle/infotypes.h"
#include "vehicle/serviceAnswers.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace zint {
namespace {

constexpr std::uint8_t infoAnswer = 0x49;
constexpr std::size_t numberedHead = 3; ///< service, infotype, message number
constexpr std::size_t numberedPart = 4; ///< what a message carries
constexpr std::size_t fewestCounterMessages = 8;

bool isNumbered(const UnitMessage& message, BusKind bus)
{
    const Bytes& bytes = message.bytes;
    const bool fits = bytes.size() > numberedHead && bytes.size() <= numberedHead + numberedPart;
    if (busOf(message, bus) == BusKind::can || !fits || bytes[0] != infoAnswer)
        return false; // some units send a long message as on CAN
    const Infotype* const infotype = infotypeOf(bytes[1]);
    return !asksForBitmap(bytes[1]) && (infotype == nullptr || infotype->form != InfoForm::messageCount);
}

bool isHeaderless(const UnitMessage& message) { return message.unit.starts_with('?'); }

/// The messages of a unit that belong together.
class Numbered {
public:
    explicit Numbered(const UnitMessage& first) : first_(first) { add(first); }

    void add(const UnitMessage& message)
    {
        if (!message.isIncomplete)
            parts_.try_emplace(message.bytes[2], message.bytes.begin() + numberedHead, message.bytes.end());
    }

    bool isWhole() const
    {
        if (parts_.empty() || parts_.begin()->first != 1 || parts_.rbegin()->first != parts_.size())
            return false;
        const Infotype* const infotype = infotypeOf(first_.bytes[1]);
        if (infotype == nullptr)
            return true;
        const bool hasCounters =
            infotype->form == InfoForm::sparkCounters || infotype->form == InfoForm::compressionCounters;
        if (hasCounters && parts_.size() < fewestCounterMessages)
            return false;
        return (infotype->messages == 0 || parts_.size() % infotype->messages == 0) &&
               std::ranges::all_of(parts_,
                                   [](const auto& part) { return part.second.size() == numberedPart; });
    }

    /// Whether this is nothing but lines of a whole answer that have come twice. Without headers they look
    /// like the answer of another unit.
    bool isRepeatedFrom(const Numbered& whole) const
    {
        const auto isThere = [&whole](const auto& part) {
            const auto found = whole.parts_.find(part.first);
            return found != whole.parts_.end() && found->second == part.second;
        };
        return isHeaderless(first_) && !isWhole() && first_.bytes[1] == whole.first_.bytes[1] &&
               std::ranges::all_of(parts_, isThere);
    }

    UnitMessage joined() const
    {
        UnitMessage whole{.unit = first_.unit, .bytes = {infoAnswer, first_.bytes[1], 0}};
        for (const auto& [number, part] : parts_)
            whole.bytes.insert(whole.bytes.end(), part.begin(), part.end());
        whole.bytes[2] = items(whole.bytes.size() - numberedHead);
        whole.isIncomplete = !isWhole();
        return whole;
    }

private:
    std::uint8_t items(std::size_t length) const
    {
        const Infotype* const infotype = infotypeOf(first_.bytes[1]);
        const std::size_t itemLength = infotype != nullptr ? infotype->itemLength : 0;
        return static_cast<std::uint8_t>(itemLength > 0 ? length / itemLength : 1);
    }

    UnitMessage first_;
    std::map<std::size_t, Bytes> parts_; ///< by their numbers
};

/// Gathers the numbered messages by units and infotypes. The others are added to those that stand alone.
std::vector<Numbered> gathered(std::vector<UnitMessage> messages, BusKind bus,
                               std::vector<UnitMessage>& alone)
{
    std::vector<Numbered> numbered;
    std::map<std::pair<std::string, std::uint8_t>, std::size_t> places;
    for (UnitMessage& message : messages) {
        if (!isNumbered(message, bus)) {
            alone.push_back(std::move(message));
            continue;
        }
        const auto [place, isNew] = places.try_emplace({message.unit, message.bytes[1]}, numbered.size());
        if (isNew)
            numbered.emplace_back(message);
        else
            numbered[place->second].add(message);
    }
    return numbered;
}

} // namespace

std::vector<UnitMessage> joinNumbered(std::vector<UnitMessage> messages, BusKind bus)
{
    std::vector<UnitMessage> all;
    const std::vector<Numbered> numbered = gathered(std::move(messages), bus, all);
    std::vector<Numbered> whole;
    std::ranges::copy_if(numbered, std::back_inserter(whole), &Numbered::isWhole);
    for (const Numbered& parts : numbered) {
        const auto repeats = [&parts](const Numbered& other) { return parts.isRepeatedFrom(other); };
        if (std::ranges::none_of(whole, repeats))
            all.push_back(parts.joined());
    }
    return all;
}

} // namespace zint
