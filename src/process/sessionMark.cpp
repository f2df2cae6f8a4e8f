#include "process/sessionMark.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace zint {
namespace {

constexpr int markCount = 8; // so many programs of one user have a mark at the same time

std::chrono::system_clock::time_point lastChange(const QFileInfo& file)
{
    return std::chrono::system_clock::time_point(
        std::chrono::milliseconds(file.lastModified().toMSecsSinceEpoch()));
}

} // namespace

SessionMark::SessionMark(const QString& folder)
{
    QDir().mkpath(folder);
    for (int place = 0; place < markCount; ++place) {
        const QString path = folder + QStringLiteral("/session-%1.lock").arg(place);
        const QFileInfo before(path);
        const bool wasThere = before.exists();
        const auto began = lastChange(before);
        auto lock = std::make_unique<QLockFile>(path);
        lock->setStaleLockTime(0); // a session may last for days
        if (!lock->tryLock(0))
            continue; // that program runs
        if (wasThere)
            cutOffSince_ = std::min(began, cutOffSince_.value_or(began));
        if (!own_)
            own_ = std::move(lock);
    }
}

} // namespace zint
