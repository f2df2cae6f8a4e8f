#include "blockingLoop.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/tcp.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
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

static int openConnection(int number)
{
    struct sockaddr_in address = {.sin_family = AF_INET, .sin_port = htons((uint16_t)number)};
    const int on = 1;
    int port = socket(AF_INET, SOCK_STREAM, 0);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (port >= 0 && connect(port, (struct sockaddr*)&address, sizeof address) == 0)
        setsockopt(port, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return port;
}

static int openPort(const char* path)
{
    static const char network[] = "tcp:127.0.0.1:";
    const size_t length = sizeof network - 1;
    return strncmp(path, network, length) == 0 ? openConnection(atoi(path + length)) : openRaw(path);
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
    int port = openPort(path);
    if (port < 0)
        return -1;
    for (int i = 0; i < count && result == 0; ++i)
        result = exchange(port, requests[i % requestCount]);
    close(port);
    return result;
}
