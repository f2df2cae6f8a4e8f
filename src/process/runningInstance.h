#pragma once

#include <QByteArray>
#include <QObject>

#include <functional>

class QLocalServer;
class QLocalSocket;

namespace zint {

/// Finds a program of this user that runs without a visible window.
///
/// A program can get there on purpose: the connection-trouble dialog shows nothing when it closes. Such a
/// program waits here to be asked back; one with a visible window does not, so that a second start beside it
/// is an ordinary one.
class RunningInstance : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Asks a hidden program to show itself. @param options for it, one line without its end
    /// @return whether one did
    static bool bringBackHidden(const QByteArray& options = {});

    /// @return false when it can't be asked, because its places are taken or nothing can be written there
    bool waitToBeAsked();
    void stopWaiting();

    /// Called with the options of a second start: shows a window. @return false when it has one already, so
    /// that the second start goes on by itself
    std::function<bool(const QByteArray& options)> onAsked;

private:
    void listenTo();
    void answer(QLocalSocket& socket);

    QLocalServer* server_ = nullptr;
};

} // namespace zint
