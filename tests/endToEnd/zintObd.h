#pragma once

#include "endToEnd/simulator.h"
#include "support/temporaryFolder.h"

#include <QProcess>
#include <gtest/gtest.h>

#include <signal.h> // NOLINT(modernize-deprecated-headers): <csignal> has no kill
#include <string>

namespace zint {

/// The words of a command line.
struct Arguments : QStringList {
    Arguments(const QStringList& list) : QStringList(list) {}
    Arguments(std::initializer_list<QString> list) : QStringList(list) {}
    Arguments(std::initializer_list<std::string> list)
    {
        for (const std::string& word : list)
            append(QString::fromStdString(word));
    }
};

/// What a program left behind.
struct Outcome {
    int status = -1; ///< -1 when it did not end by itself
    std::string output;
    std::string errors;
};

/// zint-obd without a display, with a home of its own, so that nobody's settings matter.
class ZintObd {
public:
    /// @param errorFile takes standard error when it is given. @param database its code descriptions,
    /// likewise
    explicit ZintObd(const Arguments& arguments, const QString& outputFile = {},
                     const QString& errorFile = {}, std::string_view database = {})
    {
        if (!database.empty())
            TemporaryFolder::write(home_.path("dtc.mdb"), database);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name :
             {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            environment.remove(QLatin1String(name));
        environment.insert(QStringLiteral("HOME"), QString::fromStdString(home_.path()));
        process_.setProcessEnvironment(environment);
        process_.setWorkingDirectory(QString::fromStdString(home_.path()));
        process_.setStandardOutputFile(outputFile);
        process_.setStandardErrorFile(errorFile);
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
        process_.closeWriteChannel();
    }

    void send(int signal) const { ::kill(static_cast<pid_t>(process_.processId()), signal); }

    /// The folder that it starts in and keeps its data in.
    const TemporaryFolder& home() const { return home_; }

private:
    TemporaryFolder home_;
    QProcess process_;
};

inline Outcome runZint(const Arguments& arguments, const QString& outputFile = {})
{
    return ZintObd(arguments, outputFile).wait();
}

/// Fails the test unless the program failed and said why.
inline void expectFailure(const Outcome& outcome, const std::string& why)
{
    EXPECT_EQ(outcome.status, 1) << why;
    EXPECT_NE(outcome.errors.find(why), std::string::npos) << why << ": " << outcome.errors;
}

} // namespace zint
