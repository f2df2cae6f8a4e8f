#include "blockingLoop.h"

#include <fcntl.h>
#include <string.h>
#include <termios.h>
#include <unistd.h>

static int openRaw(const char* path)
{
    struct termios settings;
    int port = open(path, O_RDWR | O_NOCTTY);
    if (port >= 0 && tcgetattr(port, &settings) == 0) {
        cfmakeraw(&settings);
        tcsetattr(port, TCSANOW, &settings);
    }
    return port;
}

static int exchange(int port, const char* request)
{
    const size_t length = strlen(request);
    char reply[256];
    ssize_t got;
    if (write(port, request, length) != (ssize_t)length)
        return -1;
    do {
        got = read(port, reply, sizeof reply);
    } while (got > 0 && reply[got - 1] != '>');
    return got > 0 ? 0 : -1;
}

int blockingLoop(const char* path, const char* const* requests, int requestCount, int count)
{
    int result = 0;
    int port = openRaw(path);
    if (port < 0)
        return -1;
    for (int i = 0; i < count && result == 0; ++i)
        result = exchange(port, requests[i % requestCount]);
    close(port);
    return result;
}
