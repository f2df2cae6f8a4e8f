#include "platform/runningInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

namespace zint {
namespace {

constexpr int placeCount = 8; // so many hidden programs of one user can wait
constexpr int patienceMs = 1000;
constexpr char question[] = "show\n"; // without it, a connection only looks whether the place is taken
constexpr char answerText[] = "shown\n";
constexpr char refusalText[] = "visible\n";

QString placeName(int place)
{
    // The home folder tells users apart on every system.
    const QByteArray user = QCryptographicHash::hash(QDir::homePath().toUtf8(), QCryptographicHash::Sha1);
    return QStringLiteral("zint-obd-%1-%2").arg(QString::fromLatin1(user.toHex().left(12))).arg(place);
}

bool isTaken(const QString& name)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    return socket.waitForConnected(patienceMs);
}

bool asksAt(const QString& name)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(patienceMs))
        return false;
    socket.write(question);
    if (!socket.waitForBytesWritten(patienceMs) || !socket.waitForReadyRead(patienceMs))
        return false;
    return socket.readAll() == answerText;
}

} // namespace

bool RunningInstance::bringBackHidden()
{
    for (int place = 0; place < placeCount; ++place) {
        if (asksAt(placeName(place)))
            return true;
    }
    return false;
}

void RunningInstance::waitToBeAsked()
{
    if (server_ != nullptr)
        return;
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    connect(server_, &QLocalServer::newConnection, this, &RunningInstance::listenTo);
    for (int place = 0; place < placeCount; ++place) {
        const QString name = placeName(place);
        if (isTaken(name))
            continue;
        QLocalServer::removeServer(name); // left behind by a program that crashed
        if (server_->listen(name))
            return;
    }
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
    if (socket.readAll() != question)
        return;
    socket.write(onAsked && onAsked() ? answerText : refusalText);
    socket.waitForBytesWritten(patienceMs);
}

} // namespace zint
