#include "endToEnd/simulator.h"
#include "endToEnd/zintObd.h"
#include "sim/pseudoTerminal.h"

#include <QTest>
#include <gtest/gtest.h>

namespace zint {
namespace {

QStringList terminalArguments(const Simulator& simulator, const char* options)
{
    return words("terminal --port") + QStringList(simulator.path()) + words(options);
}

Outcome terminalOf(const Simulator& simulator, const char* options, const char* input,
                   const char* outputFile = "")
{
    ZintObd program(terminalArguments(simulator, options), QLatin1String(outputFile));
    program.type(input);
    return program.wait();
}

TEST(TerminalCommandEndToEnd, SendsLinesAndPrintsWhatTheWindowShows)
{
    for (const char* pieces :
         {"", "--pieces 1", "--pieces 7 --line-feeds", R"(--leading-line-end --after-prompt \r\n)"}) {
        const Outcome run =
            terminalOf(Simulator((std::string("--no-announcement --latency 5 ") + pieces).c_str()), "--dec",
                       "010D\r\n0100\nATZZ\n\n0902");
        EXPECT_EQ(run.status, 0) << run.errors;
        const std::string_view output = run.output;
        const auto first = output.find("\n>010D");
        ASSERT_NE(first, std::string_view::npos) << output;
        EXPECT_TRUE(output.starts_with("Initializing...ATZ")) << output;
        EXPECT_EQ(output.substr(first + 1), ">010D  65  13  0  \n"
                                            ">0100  65  0  190  63  184  19  \n"
                                            ">ATZZ  ?\n"
                                            ">  ?\n"
                                            ">0902  73  2  1  0  0  0  85  \n"
                                            "73  2  2  57  90  78  84  \n"
                                            "73  2  3  66  68  50  57  \n"
                                            "73  2  4  49  90  48  48  \n"
                                            "73  2  5  48  48  52  50  \n")
            << pieces;
    }
}

TEST(TerminalCommandEndToEnd, TellsWhatFailed)
{
    const char* const silent = "the adapter has not answered within 1 second\n";
    const struct {
        const char* simulator;
        const char* options;
        const char* input;
        const char* complaint;
        const char* outputFile = "";
        const char* end = "\n"; ///< of the output
    } rows[] = {
        {"--disconnect-after 3", "", "0100\n0101\n", "com1 - adapter disconnected"},
        {"--no-reset-answer", "--timeout 1", "0100\n", silent},
        {"--silent-after 2", "--timeout 1", "0100\n0101\n", silent},
        {"", "--port /dev/no-such-port", "0100\n", "com1 - Comm init error: 2: "},
        {"--no-announcement --single-line-end", "--dec", "ATS0\n0100\n010D\n",
         "com1 - Overflow: a number is larger", "",
         ">0100  4100BE3FB813\n>010D  4263168 \n"}, // no reason to stop
        {"", "", "0100\n", "could not be written", "/dev/full"},
    };
    for (const auto& [simulator, options, input, complaint, outputFile, end] : rows) {
        const Outcome run = terminalOf(Simulator(simulator), options, input, outputFile);
        expectFailure(run, complaint);
        EXPECT_TRUE(run.output.empty() || run.output.ends_with(end)) << run.output;
    }
}

TEST(TerminalCommandEndToEnd, WhatIsPipedWaitsAndWhatIsTypedGoesOutAtOnce)
{
    const TemporaryFolder folder;
    const QString file = QString::fromStdString(folder.path("output"));
    const auto shows = [&](const char* end) {
        return QTest::qWaitFor([&] { return contents(file.toStdString()).ends_with(end); }, patienceMs);
    };
    const Simulator first("--silent-after 2");
    ZintObd piped(terminalArguments(first, ""), file);
    piped.type("0100\n0101\n");
    EXPECT_TRUE(shows("\n>0100  ")) << contents(file.toStdString());
    piped.send(SIGINT);
    expectFailure(piped.wait(), "ended before the adapter had answered all commands");

    const Simulator second("--silent-after 2");
    PseudoTerminal keyboard;
    QProcess typed;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), QString::fromStdString(folder.path()));
    typed.setProcessEnvironment(environment);
    typed.setStandardInputFile(QString::fromStdString(keyboard.path()));
    typed.setStandardOutputFile(file);
    typed.start(QStringLiteral(ZINT_OBD), terminalArguments(second, ""));
    EXPECT_TRUE(QTest::qWaitFor([&] { return keyboard.takeOpening(); }, patienceMs));
    keyboard.write("0100\n0101\n");
    EXPECT_TRUE(shows("\n>0100  >0101  ")) << contents(file.toStdString());
    typed.terminate();
    EXPECT_TRUE(typed.waitForFinished(patienceMs) && typed.exitCode() == 0);
}

} // namespace
} // namespace zint
