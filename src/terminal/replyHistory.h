#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace zint {

/// The last replies as they were shown, each with its line end.
class ReplyHistory {
public:
    static constexpr std::size_t most = 12;

    void add(std::string entry)
    {
        replyHistory_[historyIndex()] = std::move(entry);
        ++historyCount_;
    }

    /// Begins anew with an empty entry.
    void clear()
    {
        replyHistory_[0].clear();
        historyCount_ = 1;
    }

    bool isEmpty() const { return historyCount_ == 0; }
    const std::string& newest() const { return replyHistory_[(historyIndex() + most - 1) % most]; }

    /// All that are kept, the oldest first.
    std::string text() const
    {
        std::string all;
        for (auto k = std::min<std::int64_t>(historyCount_, most); k > 0; --k)
            all += replyHistory_[static_cast<std::size_t>(historyCount_ - k) % most];
        return all;
    }

private:
    /// Of the next one.
    std::size_t historyIndex() const { return static_cast<std::size_t>(historyCount_) % most; }

    std::array<std::string, most> replyHistory_;
    std::int64_t historyCount_ = 0; ///< ever added since the last clearing
};

} // namespace zint
