// SPDX-License-Identifier: MIT
// Communication: a Modbus-style poll over TCP. The section starts its own small device on
// 127.0.0.1 (a plain socket thread holding ten holding registers), then polls it through a
// CCommunication channel: it sends "read holding registers" requests and collects each reply
// with ReadData until the frame is complete, as a ported polling loop does.
#include "Demo.h"

#include <Vantor.h>

#include <QElapsedTimer>
#include <QThread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <thread>

namespace {

bool readFully(int fd, unsigned char *buffer, int size)
{
    for (int got = 0; got < size;) {
        const ssize_t n = ::recv(fd, buffer + got, size_t(size - got), 0);
        if (n <= 0)
            return false;
        got += int(n);
    }
    return true;
}

/// Serves Modbus TCP "read holding registers" (function 3) on one connection, then ends.
void serveDevice(int listener)
{
    const int fd = ::accept(listener, nullptr, nullptr);
    ::close(listener);
    if (fd < 0)
        return;
    quint16 registers[10];
    for (int i = 0; i < 10; ++i)
        registers[i] = quint16(1000 + 111 * i);
    unsigned char request[12];
    while (readFully(fd, request, sizeof request)) {
        const int first = request[8] << 8 | request[9];
        const int count = request[10] << 8 | request[11];
        if (request[7] != 3 || first + count > 10 || count < 1)
            break;
        unsigned char reply[9 + 20];
        std::copy(request, request + 4, reply); // transaction and protocol
        reply[4] = 0;
        reply[5] = quint8(3 + 2 * count);
        reply[6] = request[6];
        reply[7] = 3;
        reply[8] = quint8(2 * count);
        for (int i = 0; i < count; ++i) {
            reply[9 + 2 * i] = quint8(registers[first + i] >> 8);
            reply[10 + 2 * i] = quint8(registers[first + i]);
        }
        if (::send(fd, reply, size_t(9 + 2 * count), 0) != 9 + 2 * count)
            break;
    }
    ::close(fd);
}

int run(DemoContext &)
{
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(listener, 1) != 0 ||
        ::getsockname(listener, reinterpret_cast<sockaddr *>(&address), &length) != 0) {
        demoSay(QStringLiteral("no loopback port for the device"));
        return 1;
    }
    std::thread device(serveDevice, listener);

    CCommunication channel;
    CCommData data;
    data.m_nKind = CCommData::TcpClient;
    data.m_strIPAddr = "127.0.0.1";
    data.m_nPort = ntohs(address.sin_port);
    demoSay(QStringLiteral("channel %1").arg(channel.GetCommInfoString(data).text));
    int result = 1;
    if (channel.CreateComm(data, 0, -1, 0)) {
        result = 0;
        for (quint16 poll = 0; poll < 2 && result == 0; ++poll) {
            const int first = poll * 5;
            char request[12] = {0, char(poll + 1), 0, 0, 0, 6, 1, 3, 0, char(first), 0, 5};
            channel.WriteData(data, request, sizeof request);
            unsigned char reply[19];
            int got = 0;
            QElapsedTimer timer;
            timer.start();
            while (got < int(sizeof reply) && !timer.hasExpired(3000))
                got += channel.ReadData(data, reinterpret_cast<char *>(reply) + got,
                                        int(sizeof reply) - got, 1);
            if (got < int(sizeof reply)) {
                demoSay(QStringLiteral("no reply from the device"));
                result = 1;
                break;
            }
            QStringList values;
            for (int i = 0; i < 5; ++i)
                values << QStringLiteral("%1=%2").arg(first + i).arg(reply[9 + 2 * i] << 8 |
                                                                     reply[10 + 2 * i]);
            demoSay(QStringLiteral("poll %1: holding registers %2")
                        .arg(poll + 1)
                        .arg(values.join(QLatin1Char(' '))));
        }
        channel.DeleteComm(data, 0);
    } else {
        demoSay(QStringLiteral("could not connect to the device"));
        ::shutdown(listener, SHUT_RDWR);
    }
    device.join();
    return result;
}

} // namespace

static DemoSection section(65, "Communication", run);
