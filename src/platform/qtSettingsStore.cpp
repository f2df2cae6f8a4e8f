#include "platform/qtSettingsStore.h"

#include "platform/text.h"

namespace zint {
namespace {

QString nameOf(const std::string& section, const std::string& key)
{
    return toQt(section + "/" + key);
}

} // namespace

QtSettingsStore::QtSettingsStore() : settings_(QStringLiteral("Zint"), QStringLiteral("Zint")) {}

std::string QtSettingsStore::get(const std::string& section, const std::string& key,
                                 const std::string& missing) const
{
    const QVariant value = settings_.value(nameOf(section, key));
    if (!value.isValid())
        return missing;
    // A text with commas that was written by hand comes back as a list.
    return fromQt(value.toStringList().join(QStringLiteral(", ")));
}

void QtSettingsStore::save(const std::string& section, const std::string& key, const std::string& value)
{
    settings_.setValue(nameOf(section, key), toQt(value));
}

void QtSettingsStore::remove(const std::string& section, const std::string& key)
{
    settings_.remove(nameOf(section, key));
}

std::string QtSettingsStore::flush()
{
    settings_.sync();
    switch (settings_.status()) {
    case QSettings::NoError:
        return {};
    case QSettings::AccessError:
        return fromQt(settings_.fileName()) + " can't be written. Check its permissions and the free space.";
    case QSettings::FormatError:
        return fromQt(settings_.fileName()) + " is damaged. Delete it to start with the defaults.";
    }
    return {};
}

} // namespace zint
