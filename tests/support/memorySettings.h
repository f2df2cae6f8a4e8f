#pragma once

#include "shared/settingsStore.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace zint {

/// A settings store that lasts as long as the test.
class MemorySettings final : public SettingsStore {
public:
    std::string get(const std::string& section, const std::string& key,
                    const std::string& missing = {}) const override
    {
        const auto found = values_.find({section, key});
        return found == values_.end() ? missing : found->second;
    }

    void save(const std::string& section, const std::string& key, const std::string& value) override
    {
        values_[{section, key}] = value;
        savedKeys_.push_back(key);
    }

    void remove(const std::string& section, const std::string& key) override
    {
        values_.erase({section, key});
    }

    std::string flush() override
    {
        ++flushes_;
        return flushFailure_;
    }

    bool has(const std::string& section, const std::string& key) const
    {
        return values_.contains({section, key});
    }

    void failToFlush(std::string why) { flushFailure_ = std::move(why); }
    int flushes() const { return flushes_; }

    /// The keys in the order in which they were saved since the last call.
    std::vector<std::string> takeSavedKeys() { return std::exchange(savedKeys_, {}); }

private:
    std::map<std::pair<std::string, std::string>, std::string> values_;
    std::vector<std::string> savedKeys_;
    std::string flushFailure_;
    int flushes_ = 0;
};

} // namespace zint
