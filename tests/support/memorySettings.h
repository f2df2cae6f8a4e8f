#pragma once

#include "shared/settingsStore.h"

#include <map>
#include <utility>

namespace zint {

/// A settings store that lasts as long as the test.
class MemorySettings final : public SettingsStore {
public:
    std::string damageText, flushFailure;

    std::string get(const std::string& section, const std::string& key,
                    const std::string& missing = {}) const override
    {
        const auto found = values_.find({section, key});
        return found == values_.end() ? missing : found->second;
    }

    void save(const std::string& section, const std::string& key, const std::string& value) override
    {
        values_[{section, key}] = value;
    }

    void remove(const std::string& section, const std::string& key) override
    {
        values_.erase({section, key});
    }

    std::string damage() const override { return damageText; }
    std::string flush() override { return flushFailure; }

private:
    std::map<std::pair<std::string, std::string>, std::string> values_;
};

} // namespace zint
