#include "widgets/lostFocus.h"

#include <QApplication>
#include <QFocusEvent>
#include <QMenuBar>

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
        connect(qApp, &QApplication::focusChanged, this, &LostFocusWatch::notice);
    }

    bool eventFilter(QObject* box, QEvent* event) override
    {
        if (event->type() == QEvent::FocusOut) {
            const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
            isAway_ = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
                      reason == Qt::MenuBarFocusReason;
            if (!isAway_)
                handler_();
        }
        return QObject::eventFilter(box, event);
    }

private:
    /// The focus that a menu or another window has taken comes back to the box as a rule, but not always.
    void notice(const QWidget* /*old*/, const QWidget* now)
    {
        const auto* box = static_cast<QWidget*>(parent());
        if (!isAway_ || now == nullptr || now->window() != box->window() ||
            qobject_cast<const QMenuBar*>(now) != nullptr)
            return;
        isAway_ = false;
        if (now != box)
            handler_();
    }

    std::function<void()> handler_;
    bool isAway_ = false; ///< a menu or another window has the focus that the box had
};

} // namespace

void onLostFocus(QLineEdit& box, std::function<void()> handler)
{
    new LostFocusWatch(box, std::move(handler)); // the box owns it
}

} // namespace zint
