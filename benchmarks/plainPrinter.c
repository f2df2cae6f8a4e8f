#include "plainPrinter.h"

int printLog(FILE* file, const struct PlainRun* run)
{
    for (int event = 0; event < run->events; ++event) {
        fprintf(file, "##%d\r\n", event + 1);
        for (int pass = 0; pass < run->passes; ++pass)
            fprintf(file, "%d,%d\r\n", run->times[pass], run->values[(long)pass * run->events + event]);
    }
    return fflush(file) == 0 ? 0 : -1;
}

static void printValue(FILE* file, int conversion, int x)
{
    switch (conversion) {
    case 1:
        fprintf(file, "\t%.15g", x * 10000 / 255 * 0.01);
        break;
    case 4:
        fprintf(file, "\t%.15g", (x - 40) * 1.8 + 32);
        break;
    case 5:
        fprintf(file, "\t%d", x / 4);
        break;
    case 7:
        fprintf(file, "\t%.15g", x * 0.6215);
        break;
    case 14:
        fprintf(file, "\t%.15g", x * 0.5 - 64);
        break;
    case 15:
        fprintf(file, "\t%.15g", x / 256 * 0.005);
        break;
    case 17:
        fprintf(file, "\t%.15g", x * 0.01);
        break;
    default:
        fprintf(file, "\t%d", x);
    }
}

int printTable(FILE* file, const struct PlainRun* run)
{
    for (int pass = 0; pass < run->passes; ++pass) {
        fprintf(file, "%d", run->times[pass]);
        for (int event = 0; event < run->events; ++event)
            printValue(file, run->conversions[event], run->values[(long)pass * run->events + event]);
        fputs("\r\n", file);
    }
    return fflush(file) == 0 ? 0 : -1;
}
