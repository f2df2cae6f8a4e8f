#pragma once

#include "shared/settingsStore.h"

#include <QSettings>

namespace zint {

/// The platform's per-user settings store, application "Zint".
class QtSettingsStore final : public SettingsStore {
public:
    QtSettingsStore();

    std::string get(const std::string& section, const std::string& key,
                    const std::string& missing) const override;
    void save(const std::string& section, const std::string& key, const std::string& value) override;
    void remove(const std::string& section, const std::string& key) override;
    std::string damage() const override;
    std::string flush() override;

    std::string fileName() const; ///< of the store, in UTF-8: a file, or a key of the registry

private:
    QSettings settings_;
};

} // namespace zint
