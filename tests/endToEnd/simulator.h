#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <stdexcept>

namespace zint {

constexpr int patienceMs = 20000;

inline QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

/// zint-sim, serving until this is destroyed.
class Simulator {
public:
    explicit Simulator(const char* options)
    {
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(QStringLiteral(ZINT_SIM), words("--reset-time 20") + words(options));
        if (!process_.waitForReadyRead(patienceMs))
            throw std::runtime_error("zint-sim does not start");
        path_ = QString::fromUtf8(process_.readLine()).trimmed();
    }
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;
    ~Simulator()
    {
        process_.terminate();
        process_.waitForFinished(patienceMs);
    }

    const QString& path() const { return path_; }

private:
    QProcess process_;
    QString path_;
};

} // namespace zint
