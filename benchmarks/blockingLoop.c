#include "blockingLoop.h"

#include <fcntl.h>
#include <string.h>
#include <termios.h>
#include <unistd.h>

int blockingLoop(const char* path, const char* request, int count)
{
    const size_t length = strlen(request);
    struct termios settings;
    char reply[256];
    int port = open(path, O_RDWR | O_NOCTTY);
    if (port < 0)
        return -1;
    if (tcgetattr(port, &settings) == 0) {
        cfmakeraw(&settings);
        tcsetattr(port, TCSANOW, &settings);
    }
    for (int i = 0; i < count; ++i) {
        if (write(port, request, length) != (ssize_t)length)
            break;
        ssize_t got;
        do {
            got = read(port, reply, sizeof reply);
        } while (got > 0 && reply[got - 1] != '>');
        if (got <= 0) {
            count = -1;
            break;
        }
    }
    close(port);
    return count < 0 ? -1 : 0;
}
