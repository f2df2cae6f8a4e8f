#include "platform/lostFocus.h"

#include <QFocusEvent>

#include <utility>

namespace zint {
namespace {

/// The line edit's own signal leaves out boxes that were not edited.
class LostFocusWatch final : public QObject {
public:
    LostFocusWatch(QLineEdit& box, std::function<void()> handler)
        : QObject(&box), handler_(std::move(handler))
    {
        box.installEventFilter(this);
    }

    bool eventFilter(QObject* box, QEvent* event) override
    {
        if (event->type() == QEvent::FocusOut) {
            const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
                reason != Qt::MenuBarFocusReason)
                handler_();
        }
        return QObject::eventFilter(box, event);
    }

private:
    std::function<void()> handler_;
};

} // namespace

void onLostFocus(QLineEdit& box, std::function<void()> handler)
{
    new LostFocusWatch(box, std::move(handler)); // the box owns it
}

} // namespace zint
