#include "platform/rememberedSize.h"

#include "platform/text.h"

#include <QScreen>
#include <QStyle>

namespace zint {
namespace {

constexpr const char* sizeSection = "Windows";

} // namespace

void fitToScreen(QWidget& window)
{
    const int titleBar =
        window.style()->pixelMetric(QStyle::PM_TitleBarHeight); // it has none before it is shown
    const QSize frame = (window.frameSize() - window.size()).expandedTo({0, titleBar});
    window.resize(window.size().boundedTo(window.screen()->availableSize() - frame));
}

void restoreSize(QWidget& window, const SettingsStore& settings)
{
    const std::string stored = settings.get(sizeSection, fromQt(window.objectName()));
    window.restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(stored)));
    fitToScreen(window);
}

void rememberSize(const QWidget& window, SettingsStore& settings)
{
    settings.save(sizeSection, fromQt(window.objectName()), window.saveGeometry().toBase64().toStdString());
}

} // namespace zint
