#include "platform/rememberedSize.h"

#include "platform/text.h"

#include <QMainWindow>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>

namespace zint {
namespace {

constexpr const char* sizeSection = "Windows";

bool fits(QSize size, QSize room) { return size.boundedTo(room) == size; }

/// What the screen has left for a window beside its frame, which it does not have before it is shown.
QSize roomFor(const QWidget& window)
{
    const int side = window.style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QSize frame(2 * side, titleBar + 2 * side);
    return window.screen()->availableSize() - frame.expandedTo(window.frameSize() - window.size());
}

/// Lets the user reach what would lie outside of the screen.
void scrollContents(QMainWindow& window)
{
    auto* area = new QScrollArea(&window);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus); // it follows the focus of what it shows
    area->setWidgetResizable(true);
    area->setWidget(window.takeCentralWidget());
    window.setCentralWidget(area);
}

} // namespace

void fitToScreen(QWidget& window)
{
    const QSize room = roomFor(window);
    QSize least = window.minimumSizeHint();
    auto* main = qobject_cast<QMainWindow*>(&window);
    if (main != nullptr && !fits(least, room)) {
        scrollContents(*main);
        const int bar = window.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        least += QSize(bar, bar);
    }
    const QSize size = window.testAttribute(Qt::WA_Resized) ? window.size() : window.sizeHint();
    const QSize wanted = size.expandedTo(least);
    if (!fits(wanted, room * 2 / 3)) // of its own accord, the toolkit would not give more
        window.resize(wanted.boundedTo(room));
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
