#include "platform/rememberedSize.h"

#include "platform/text.h"

namespace zint {
namespace {

constexpr const char* sizeSection = "Windows";

} // namespace

void restoreSize(QWidget& window, const SettingsStore& settings)
{
    const std::string stored = settings.get(sizeSection, fromQt(window.objectName()));
    window.restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(stored)));
}

void rememberSize(const QWidget& window, SettingsStore& settings)
{
    settings.save(sizeSection, fromQt(window.objectName()), window.saveGeometry().toBase64().toStdString());
}

} // namespace zint
