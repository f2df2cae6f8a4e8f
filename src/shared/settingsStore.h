#pragma once

#include <string>

namespace zint {

/// Texts that outlive the program, kept per user by section and key under the application name "Zint".
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// @return the stored text, or `missing` when there is none
    virtual std::string get(const std::string& section, const std::string& key,
                            const std::string& missing = {}) const = 0;

    virtual void save(const std::string& section, const std::string& key, const std::string& value) = 0;

    virtual void remove(const std::string& section, const std::string& key) = 0;

    /// Why what is stored can't be read, in words for the user; empty when it can.
    virtual std::string damage() const { return {}; }

    /// Writes what was saved. @return why that failed, in words for the user, or empty
    virtual std::string flush() = 0;
};

} // namespace zint
