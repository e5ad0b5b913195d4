// SPDX-License-Identifier: MIT
#include "PingCheck.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <icmpapi.h>
#include <iphlpapi.h>
#include <winsock2.h>

#include <vector>

BOOL PingCheck::Execute(char const *address)
{
    if (!address)
        return FALSE;
    const unsigned long destination = inet_addr(address);
    if (destination == INADDR_NONE)
        return FALSE;
    const HANDLE icmp = IcmpCreateFile();
    if (icmp == INVALID_HANDLE_VALUE)
        return FALSE;
    char request[32] = "Data Buffer";
    std::vector<char> reply(sizeof(ICMP_ECHO_REPLY) + sizeof request);
    const DWORD replies = IcmpSendEcho(icmp, destination, request, sizeof request, nullptr,
                                       reply.data(), DWORD(reply.size()), 1000);
    IcmpCloseHandle(icmp);
    return replies > 0 ? TRUE : FALSE;
}

#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/ip.h>
#include <netinet/ip_icmp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QAtomicInteger>
#include <QElapsedTimer>

#include <cerrno>

#include <cstring>

namespace {

constexpr int PayloadSize = 32;
constexpr int TimeOutMs = 1000;

quint16 checksum(const unsigned char *data, int length)
{
    quint32 sum = 0;
    for (int i = 0; i + 1 < length; i += 2)
        sum += quint32(data[i]) << 8 | data[i + 1];
    if (length & 1)
        sum += quint32(data[length - 1]) << 8;
    while (sum >> 16)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return quint16(~sum);
}

class Socket
{
public:
    Socket()
    {
        // The datagram form needs no privilege where ping_group_range admits our group; the
        // kernel then owns the identifier and hands us only our own replies.
        fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_ICMP);
        raw = fd < 0;
        if (raw)
            fd = ::socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_ICMP);
    }
    ~Socket()
    {
        if (fd >= 0)
            ::close(fd);
    }
    int fd;
    bool raw;
};

/// True when `packet` (an ICMP message) is the echo reply to our request.
bool isOurReply(const unsigned char *icmp, int length, quint16 id, quint16 sequence, bool raw,
                const unsigned char *payload)
{
    if (length < 8 + PayloadSize || icmp[0] != ICMP_ECHOREPLY || icmp[1] != 0)
        return false;
    const quint16 replyId = quint16(icmp[4] << 8 | icmp[5]);
    const quint16 replySequence = quint16(icmp[6] << 8 | icmp[7]);
    if (replySequence != sequence || (raw && replyId != id))
        return false;
    return std::memcmp(icmp + 8, payload, PayloadSize) == 0;
}

} // namespace

BOOL PingCheck::Execute(char const *address)
{
    if (!address)
        return FALSE;
    in_addr destination {};
    // inet_addr's conversion; its all-ones "none" also means no reply.
    destination.s_addr = inet_addr(address);
    if (destination.s_addr == INADDR_NONE)
        return FALSE;

    Socket socket;
    if (socket.fd < 0)
        return FALSE;

    static QAtomicInteger<quint16> counter(0);
    const quint16 sequence = quint16(counter.fetchAndAddRelaxed(1) + 1);
    const quint16 id = quint16(::getpid() ^ (quintptr(&socket) >> 4));

    unsigned char request[8 + PayloadSize] = {};
    request[0] = ICMP_ECHO;
    request[4] = quint8(id >> 8);
    request[5] = quint8(id);
    request[6] = quint8(sequence >> 8);
    request[7] = quint8(sequence);
    std::memcpy(request + 8, "Data Buffer", sizeof "Data Buffer");
    const quint16 sum = checksum(request, sizeof request);
    request[2] = quint8(sum >> 8);
    request[3] = quint8(sum);

    sockaddr_in to {};
    to.sin_family = AF_INET;
    to.sin_addr = destination;
    QElapsedTimer timer;
    timer.start();
    if (::sendto(socket.fd, request, sizeof request, 0, reinterpret_cast<sockaddr *>(&to),
                 sizeof to) != ssize_t(sizeof request))
        return FALSE;

    unsigned char packet[1500];
    for (;;) {
        const qint64 left = TimeOutMs - timer.elapsed();
        if (left <= 0)
            return FALSE;
        pollfd waiting {socket.fd, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, int(left));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return FALSE;
        sockaddr_in from {};
        socklen_t fromLength = sizeof from;
        const ssize_t got = ::recvfrom(socket.fd, packet, sizeof packet, MSG_DONTWAIT,
                                       reinterpret_cast<sockaddr *>(&from), &fromLength);
        if (got <= 0)
            continue;
        const unsigned char *icmp = packet;
        int length = int(got);
        if (socket.raw) {
            // A raw socket sees every ICMP message with its IP header, our own request too.
            const int headerLength = (packet[0] & 0x0F) * 4;
            if (length < headerLength || from.sin_addr.s_addr != destination.s_addr)
                continue;
            icmp += headerLength;
            length -= headerLength;
        }
        if (isOurReply(icmp, length, id, sequence, socket.raw, request + 8))
            return TRUE;
    }
}
#endif
