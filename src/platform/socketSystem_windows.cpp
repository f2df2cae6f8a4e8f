#include "platform/socketSystem.h"

// The second one needs the first.
// clang-format off
#include <winsock2.h>
#include <mstcpip.h>
// clang-format on

namespace zint {

/// The toolkit would switch it on with the times of the system, which are hours.
void watchOver(qintptr socket)
{
    constexpr ULONG interval = 5000; // milliseconds
    tcp_keepalive keepAlive{.onoff = 1, .keepalivetime = interval, .keepaliveinterval = interval};
    DWORD count = 0;
    ::WSAIoctl(static_cast<SOCKET>(socket), SIO_KEEPALIVE_VALS, &keepAlive, sizeof keepAlive, nullptr, 0,
               &count, nullptr, nullptr); // else its own times hold
}

std::size_t sendNow(qintptr /*socket*/, std::string_view /*text*/)
{
    return 0; // the toolkit's socket sends it
}

} // namespace zint
