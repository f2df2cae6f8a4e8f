#include "platform/qtSettingsStore.h"

#include "platform/text.h"

#include <QFileInfo>

namespace zint {
namespace {

QString nameOf(const std::string& section, const std::string& key) { return toQt(section + "/" + key); }

} // namespace

QtSettingsStore::QtSettingsStore() : settings_(QStringLiteral("Zint"), QStringLiteral("Zint")) {}

std::string QtSettingsStore::get(const std::string& section, const std::string& key,
                                 const std::string& missing) const
{
    const QVariant value = settings_.value(nameOf(section, key));
    if (!value.isValid())
        return missing;
    // A text with commas that was written by hand comes back as a list.
    return fromQt(value.toStringList().join(u','));
}

void QtSettingsStore::save(const std::string& section, const std::string& key, const std::string& value)
{
    settings_.setValue(nameOf(section, key), toQt(value));
}

void QtSettingsStore::remove(const std::string& section, const std::string& key)
{
    settings_.remove(nameOf(section, key));
}

std::string QtSettingsStore::damage() const
{
    // The toolkit reads most damaged files as empty ones. All that is stored stands in some section.
    const bool isEmpty = settings_.childGroups().isEmpty() && QFileInfo(settings_.fileName()).size() > 0;
    if (settings_.status() != QSettings::FormatError && !isEmpty)
        return {};
    return "The saved settings in " + fileName() +
           " are damaged; what can't be read has its default value. They are written anew at the exit.";
}

std::string QtSettingsStore::fileName() const
{
    const QString name = settings_.fileName();
    return fromQt(name.startsWith(QLatin1String("\\HKEY_")) ? name.mid(1) : name);
}

std::string QtSettingsStore::flush()
{
    settings_.sync();
    if (settings_.status() != QSettings::AccessError)
        return {};
    return fileName() + " can't be written. Check its permissions and the free space.";
}

} // namespace zint
