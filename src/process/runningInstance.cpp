#include "process/runningInstance.h"

#include "process/folders.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace zint {
namespace {

constexpr int placeCount = 8; // so many hidden programs of one user can wait
constexpr int patienceMs = 1000;
constexpr QByteArrayView question("show "); // without it, a connection only looks whether the place is taken
constexpr char answerText[] = "shown\n";
constexpr char refusalText[] = "visible\n";

#ifdef Q_OS_WIN
/// All users' names stand in one place, where the home folder tells them apart.
QString ownPrefix()
{
    const QByteArray user = QCryptographicHash::hash(QDir::homePath().toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(user.toHex().left(12)) + QLatin1Char('-');
}

/// Only the program that the user has started just now may let another one come to the front.
void letOtherComeToFront() { ::AllowSetForegroundWindow(ASFW_ANY); }
#else
void letOtherComeToFront() {}

/// A folder that no other user can write to: who listens here is asked instead of starting the program.
QString ownPrefix()
{
    const QString session = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString folder = session.isEmpty() ? userDataFolder() : session;
    QDir().mkpath(folder);
    return folder + QLatin1Char('/');
}
#endif

QString placeName(int place) { return ownPrefix() + QStringLiteral("zint-obd-%1").arg(place); }

bool isTaken(const QString& name)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    return socket.waitForConnected(patienceMs);
}

bool asksAt(const QString& name, const QByteArray& options)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(patienceMs))
        return false;
    letOtherComeToFront();
    socket.write(question.toByteArray() + options + '\n');
    if (!socket.waitForBytesWritten(patienceMs) || !socket.waitForReadyRead(patienceMs))
        return false;
    return socket.readAll() == answerText;
}

} // namespace

bool RunningInstance::bringBackHidden(const QByteArray& options)
{
    for (int place = 0; place < placeCount; ++place) {
        if (asksAt(placeName(place), options))
            return true;
    }
    return false;
}

bool RunningInstance::waitToBeAsked()
{
    if (server_ != nullptr)
        return true;
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    connect(server_, &QLocalServer::newConnection, this, &RunningInstance::listenTo);
    for (int place = 0; place < placeCount; ++place) {
        const QString name = placeName(place);
        if (isTaken(name))
            continue;
        QLocalServer::removeServer(name); // left behind by a program that crashed
        if (server_->listen(name))
            return true;
    }
    stopWaiting();
    return false;
}

void RunningInstance::stopWaiting()
{
    if (server_ == nullptr)
        return;
    server_->close();
    server_->deleteLater();
    server_ = nullptr;
}

void RunningInstance::listenTo()
{
    QLocalSocket* socket = server_->nextPendingConnection();
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] { answer(*socket); });
}

void RunningInstance::answer(QLocalSocket& socket)
{
    if (!socket.canReadLine()) // more is to come
        return;
    const QByteArray asked = socket.readLine().chopped(1);
    if (!asked.startsWith(question))
        return;
    socket.write(onAsked && onAsked(asked.mid(question.size())) ? answerText : refusalText);
    socket.waitForBytesWritten(patienceMs);
}

} // namespace zint
