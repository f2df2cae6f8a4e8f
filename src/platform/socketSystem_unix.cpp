#include "platform/socketSystem.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace zint {
namespace {

void set(qintptr socket, int level, int option, int value)
{
    ::setsockopt(static_cast<int>(socket), level, option, &value, sizeof value); // else its own times hold
}

} // namespace

void watchOver(qintptr socket)
{
    [[maybe_unused]] constexpr int interval = 5; // seconds
    set(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
#ifdef TCP_KEEPIDLE
    set(socket, IPPROTO_TCP, TCP_KEEPIDLE, interval);
#endif
#ifdef TCP_KEEPINTVL
    set(socket, IPPROTO_TCP, TCP_KEEPINTVL, interval);
#endif
#ifdef TCP_KEEPCNT
    set(socket, IPPROTO_TCP, TCP_KEEPCNT, 3);
#endif
#ifdef TCP_USER_TIMEOUT // of what was sent and not acknowledged, in milliseconds
    set(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, 4 * interval * 1000);
#endif
}

std::size_t sendNow(qintptr socket, std::string_view text)
{
#ifdef MSG_NOSIGNAL
    constexpr int flags = MSG_NOSIGNAL;
#else
    constexpr int flags = 0; // the toolkit ignores the signal for the whole program
#endif
    const ssize_t count = ::send(static_cast<int>(socket), text.data(), text.size(), flags);
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

} // namespace zint
