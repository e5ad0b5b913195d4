// SPDX-License-Identifier: MIT
#include "ModbusSimulator.h"

#include <CCrc.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

namespace {

/// Waits up to 100 ms for `fd` to become readable; false on time-out or error.
bool readable(int fd)
{
    pollfd p {fd, POLLIN, 0};
    return ::poll(&p, 1, 100) > 0;
}

void appendCrc(std::vector<unsigned char> &frame)
{
    const int crc = CCrc::GetCrc16_15_2_1(frame.data(), int(frame.size()));
    frame.push_back(static_cast<unsigned char>(crc >> 8));
    frame.push_back(static_cast<unsigned char>(crc));
}

} // namespace

ModbusSimulator::ModbusSimulator(int badCrcEvery, int shortEvery, int dropEvery)
    : m_badCrcEvery(badCrcEvery)
    , m_shortEvery(shortEvery)
    , m_dropEvery(dropEvery)
{ }

ModbusSimulator::~ModbusSimulator()
{
    stop();
}

bool ModbusSimulator::start()
{
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (m_listener < 0 ||
        ::bind(m_listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(m_listener, 4) != 0 ||
        ::getsockname(m_listener, reinterpret_cast<sockaddr *>(&address), &length) != 0) {
        if (m_listener >= 0)
            ::close(m_listener);
        m_listener = -1;
        return false;
    }
    m_port = ntohs(address.sin_port);
    m_thread = std::thread(&ModbusSimulator::serve, this);
    return true;
}

void ModbusSimulator::stop()
{
    m_stop = true;
    if (m_thread.joinable())
        m_thread.join();
    if (m_listener >= 0)
        ::close(m_listener);
    m_listener = -1;
}

void ModbusSimulator::serve()
{
    while (!m_stop) {
        if (!readable(m_listener))
            continue;
        const int fd = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd >= 0) {
            serveConnection(fd);
            ::close(fd);
        }
    }
}

void ModbusSimulator::serveConnection(int fd)
{
    std::vector<unsigned char> request;
    while (!m_stop) {
        if (!readable(fd))
            continue;
        unsigned char chunk[256];
        const ssize_t n = ::recv(fd, chunk, sizeof chunk, 0);
        if (n <= 0)
            return;
        request.insert(request.end(), chunk, chunk + n);
        // Requests are 8 bytes: unit, function, address and count (big-endian), CRC.
        while (request.size() >= 8) {
            std::vector<unsigned char> frame(request.begin(), request.begin() + 6);
            appendCrc(frame);
            const bool crcOk = std::equal(frame.begin(), frame.end(), request.begin());
            const int first = request[2] << 8 | request[3];
            const int count = request[4] << 8 | request[5];
            const int unit = request[0];
            const int function = request[1];
            request.erase(request.begin(), request.begin() + 8);
            if (!crcOk || function != 3 || count < 1 || count > 125)
                continue; // a real device stays silent on a frame it cannot take
            const int number = ++m_requests;
            if (m_dropEvery > 0 && number % m_dropEvery == 0)
                return; // the connection goes away without a reply
            std::vector<unsigned char> reply {static_cast<unsigned char>(unit), 3,
                                              static_cast<unsigned char>(2 * count)};
            for (int i = 0; i < count; ++i) {
                const int v = registerValue(first + i, number);
                reply.push_back(static_cast<unsigned char>(v >> 8));
                reply.push_back(static_cast<unsigned char>(v));
            }
            appendCrc(reply);
            if (m_badCrcEvery > 0 && number % m_badCrcEvery == 0)
                reply.back() ^= 0x5A;
            size_t length = reply.size();
            if (m_shortEvery > 0 && number % m_shortEvery == 0)
                length /= 2;
            if (::send(fd, reply.data(), length, MSG_NOSIGNAL) != ssize_t(length))
                return;
        }
    }
}
