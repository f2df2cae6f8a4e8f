#include "forms/formTest.h"

#include "platform/text.h"

#include <QAction>
#include <QDeadlineTimer>
#include <QEvent>
#include <QGroupBox>
#include <QTest>
#include <QTimer>

namespace zint {

bool waitUntil(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, 5000);
}

void withNextDialog(const std::function<void(QWidget& dialog)>& act)
{
    auto* watch = new QTimer(qApp);
    QObject::connect(watch, &QTimer::timeout, watch, [watch, act] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr)
            return;
        watch->stop();
        watch->deleteLater();
        act(*dialog);
    });
    watch->start(5);
}

void answerNextBox(QMessageBox::StandardButton button, QString* text)
{
    withNextDialog([button, text](QWidget& dialog) {
        auto* box = qobject_cast<QMessageBox*>(&dialog);
        ASSERT_NE(box, nullptr);
        if (text != nullptr)
            *text = box->text();
        ASSERT_NE(box->button(button), nullptr);
        box->button(button)->click();
    });
}

FormTest::FormTest()
    : context{
          .values = values,
          .design = design,
          .settings = settings,
          .connection = [this] { return choice; },
          .makePort =
              [this](EventGate& gate, const ConnectionChoice&) {
                  auto port = std::make_unique<ScriptedAdapter>(&gate);
                  adapter = port.get();
                  return port;
              },
          .openFailedConn = [this](QWidget&) { ++failedConnOpened; },
      }
{
}

FormTest::~FormTest()
{
    delete form;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString FormTest::textOf(const char* name)
{
    if (auto* label = form->findChild<QLabel*>(QLatin1String(name)))
        return label->text();
    if (auto* button = form->findChild<QPushButton*>(QLatin1String(name)))
        return button->text();
    return control<QGroupBox>(name)->title();
}

} // namespace zint
