// Requests per second over a serial line, or a connection: the program's link against a blocking loop, in
// turn on the same adapter.

#include "linkRun.h"

int main(int argc, char* argv[])
{
    return compareRates(
        argc, argv, {.name = "link", .counted = "requests", .atLeast = 0.9},
        [](const char* path, int count) { return LinkRun(devicePort(path), count).secondsTaken(); },
        [](const char* path, int count) { return blockingSeconds(path, "010C\r", count); });
}
