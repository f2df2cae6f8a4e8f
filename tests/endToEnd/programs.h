#pragma once

#include "platform/text.h"
#include "support/temporaryFolder.h"

#include <QProcess>
#include <QTest>
#include <gtest/gtest.h>

#include <signal.h> // NOLINT(modernize-deprecated-headers): <csignal> has no kill
#include <stdexcept>
#include <string>

namespace zint {

constexpr int patienceMs = 20000;

inline bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, patienceMs); }

inline QStringList words(const std::string& text) { return toQt(text).split(u' ', Qt::SkipEmptyParts); }

/// zint-sim, serving until this is destroyed.
class Simulator {
public:
    explicit Simulator(const std::string& options)
    {
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(QStringLiteral(ZINT_SIM), words("--reset-time 20 --latency 5 " + options));
        path_ = nextLine();
    }
    ~Simulator()
    {
        process_.terminate();
        process_.waitForFinished(patienceMs);
    }

    const std::string& path() const { return path_; }

    /// What it prints behind the path.
    std::string nextLine()
    {
        if (!process_.canReadLine() && !process_.waitForReadyRead(patienceMs))
            throw std::runtime_error("zint-sim does not start");
        return fromQt(QString::fromUtf8(process_.readLine()).trimmed());
    }

    /// A command line of zint-obd with this adapter on com1.
    QStringList with(const std::string& command) const { return words("--port " + path_ + " " + command); }

private:
    QProcess process_;
    std::string path_;
};

/// What a program left behind.
struct Outcome {
    int status = -1; ///< -1 when it did not end by itself
    std::string output;
    std::string errors;

    std::string all() const { return std::to_string(status) + "|" + output + "|" + errors; }
};

/// Files or terminals in place of the pipes that a program reads and writes.
struct Channels {
    std::string output;
    std::string errors;
    std::string input;
    std::string home; ///< a folder in place of a home of its own
};

/// zint-obd without a display, with a home of its own, so that nobody's settings matter.
class ZintObd {
public:
    explicit ZintObd(const QStringList& arguments, const Channels& channels = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name :
             {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            environment.remove(QLatin1String(name));
        environment.insert(QStringLiteral("HOME"),
                           toQt(channels.home.empty() ? home_.path() : channels.home));
        process_.setProcessEnvironment(environment);
        process_.setWorkingDirectory(toQt(home_.path()));
        process_.setStandardOutputFile(toQt(channels.output));
        process_.setStandardErrorFile(toQt(channels.errors));
        process_.setStandardInputFile(toQt(channels.input));
        process_.setChildProcessModifier([] { // tests in the background would pass ignored signals on
            for (const int number : {SIGINT, SIGTERM, SIGHUP})
                ::signal(number, SIG_DFL);
        });
        process_.start(QStringLiteral(ZINT_OBD), arguments);
        process_.waitForStarted(patienceMs);
    }

    Outcome wait()
    {
        const bool ended = process_.state() == QProcess::NotRunning || process_.waitForFinished(patienceMs);
        const bool byItself = ended && process_.exitStatus() == QProcess::NormalExit;
        return {byItself ? process_.exitCode() : -1, process_.readAllStandardOutput().toStdString(),
                process_.readAllStandardError().toStdString()};
    }

    /// What is typed or piped into it, to its end.
    void type(const char* input)
    {
        process_.write(input);
        process_.waitForBytesWritten(patienceMs);
        process_.closeWriteChannel();
    }

    void send(int signal) const { ::kill(static_cast<pid_t>(process_.processId()), signal); }

    /// The folder that it starts in and keeps its data in.
    const TemporaryFolder& home() const { return home_; }

private:
    TemporaryFolder home_;
    QProcess process_;
};

inline Outcome runZint(const QStringList& arguments, const Channels& channels = {})
{
    return ZintObd(arguments, channels).wait();
}

/// A command and its adapter. Several of them wait at the same time.
struct VehicleRun {
    Simulator simulator;
    ZintObd program;

    VehicleRun(const std::string& simulatorOptions, const std::string& command, const Channels& channels = {})
        : simulator(simulatorOptions), program(simulator.with(command), channels)
    {
    }
};

/// Fails the test unless the program failed and said why.
inline void expectFailure(const Outcome& outcome, const std::string& why)
{
    EXPECT_EQ(outcome.status, 1) << why;
    EXPECT_NE(outcome.errors.find(why), std::string::npos) << why << ": " << outcome.errors;
}

} // namespace zint
