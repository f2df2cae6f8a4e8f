#include "sim/loopbackServer.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <system_error>

namespace zint {
namespace {

int checked(int result)
{
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), "network");
    return result;
}

void switchOn(int socket, int level, int option)
{
    const int on = 1;
    checked(setsockopt(socket, level, option, &on, sizeof on));
}

/// The system's calls take addresses of all kinds as one type.
sockaddr* general(sockaddr_in& address)
{
    return reinterpret_cast<sockaddr*>(&address); // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

} // namespace

LoopbackServer::LoopbackServer(int port)
    : listener_(checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)))
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    switchOn(listener_.get(), SOL_SOCKET, SO_REUSEADDR);
    checked(bind(listener_.get(), general(address), size));
    checked(listen(listener_.get(), 1));
    checked(getsockname(listener_.get(), general(address), &size));
    port_ = ntohs(address.sin_port);
}

bool LoopbackServer::takeClient()
{
    if (client_)
        return false;
    const int client = accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (client < 0)
        return false; // nobody, or one who has given up
    client_.emplace(client);
    switchOn(client, IPPROTO_TCP, TCP_NODELAY);
    return true;
}

std::string LoopbackServer::read()
{
    if (!client_)
        return {};
    std::array<char, 4096> buffer;
    const ssize_t count = recv(client_->get(), buffer.data(), buffer.size(), 0);
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
        client_.reset();
    return {buffer.data(), static_cast<std::size_t>(count > 0 ? count : 0)};
}

void LoopbackServer::write(std::string_view text)
{
    while (client_ && !text.empty()) {
        const ssize_t count = send(client_->get(), text.data(), text.size(), MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return; // that it has gone shows when it is read
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace zint
