// What a line costs in the box into which the tools write, as the box grows to as many lines as a mode has
// PIDs: processor time of the first lines against the last ones.

#include "measure.h"
#include "widgets/plainTextBox.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <string>

namespace {

constexpr int lineCount = 0x10000;
constexpr int measuredLines = 0x2000;
constexpr int linesAtATime = 64;               // that a fast adapter sends between two looks at the box
constexpr std::chrono::milliseconds pause{50}; // the box shows meanwhile what it was given

/// Writes lines into a box on the screen as they come in a scan.
class Writing {
public:
    Writing()
    {
        box_.resize(600, 400);
        box_.show();
        wait();
    }

    /// @return the processor time of a line, in microseconds
    double write(int count, int atATime)
    {
        const double before = processorSeconds();
        for (int written = 0; written < count; written += atATime) {
            for (int i = 0; i < atATime; ++i)
                box_.append("V 22" + std::to_string(lines_++) + " 1A F8   [..] 6904\r\n");
            wait();
        }
        return (processorSeconds() - before) / count * 1e6;
    }

    int shownLines() const { return box_.blockCount() - 1; }

private:
    static void wait()
    {
        QEventLoop loop;
        QTimer::singleShot(pause, &loop, &QEventLoop::quit);
        loop.exec();
    }

    zint::PlainTextBox box_;
    int lines_ = 100000;
};

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    Writing writing;
    writing.write(linesAtATime, linesAtATime); // what only the first showing costs
    const double first = writing.write(measuredLines, linesAtATime);
    writing.write(lineCount - 2 * measuredLines, measuredLines);
    const double last = writing.write(measuredLines, linesAtATime);
    if (writing.shownLines() != lineCount + linesAtATime)
        fail("the box does not show all lines");
    std::printf("output box, %d lines: %.2f us for each of the first %d, %.2f us for each of the last: ratio "
                "%.2f (%s)\n",
                lineCount, first, measuredLines, last, last / first, atMost(1.5, last / first).c_str());
    return benchmarkStatus();
}
