#include "widgets/icons.h"

#include "widgets/dark.h"

#include <QAbstractButton>
#include <QAction>
#include <QGuiApplication>
#include <QIcon>
#include <QIconEngine>

static void initialiseIconResource() { Q_INIT_RESOURCE(icons); } // must stand outside any namespace

namespace zint {
namespace {

constexpr QLatin1String hicolor("hicolor"); // no theme, but the folder of the programs' own icons

QString ownSet()
{
    return isDark(QGuiApplication::palette()) ? QStringLiteral("zint-dark") : QStringLiteral("zint");
}

/// An icon of the program's own set, in the variant that suits the colours when it is drawn.
class OwnIcon final : public QIconEngine {
public:
    explicit OwnIcon(QString name) : name_(std::move(name)) {}

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State state) override
    {
        drawing().paint(painter, place, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return drawing().pixmap(size, mode, state);
    }
    QIconEngine* clone() const override { return new OwnIcon(name_); }
    QString iconName() override { return name_; }

private:
    QIcon drawing() const
    {
        return QIcon(QStringLiteral(":/icons/%1/scalable/actions/%2.svg").arg(ownSet(), name_));
    }

    QString name_;
};

template <typename Control>
void giveIcons(const QWidget& window)
{
    for (Control* control : window.findChildren<Control*>()) {
        if (const QVariant name = control->property("ownIcon"); name.isValid())
            control->setIcon(ownIcon(name.toString()));
    }
}

} // namespace

void useOwnIcons()
{
    initialiseIconResource();
    const QString desktops = QIcon::themeName();
    if (desktops.isEmpty() || desktops == hicolor || desktops.startsWith(QLatin1String("zint")))
        QIcon::setThemeName(ownSet()); // else each icon would be sought in all the programs' folders first
    QIcon::setFallbackThemeName(ownSet());
    QIcon::setThemeSearchPaths(QIcon::themeSearchPaths()); // icons that were looked up before are so again
}

void giveOwnIcons(const QWidget& window)
{
    giveIcons<QAbstractButton>(window);
    giveIcons<QAction>(window);
}

QIcon ownIcon(const QString& name) { return QIcon(new OwnIcon(name)); }

void useProgramIcon() { QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/zint-obd.svg"))); }

} // namespace zint
