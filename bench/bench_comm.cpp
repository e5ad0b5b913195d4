// SPDX-License-Identifier: MIT
// Request/response round trips of 64-byte frames over loopback TCP: through CCommunication
// (polled, 1 ms read waits) against a plain blocking POSIX socket, both with the default socket
// options and talking to the same echo server in this process. Prints the channel's rate as a
// fraction of the raw rate.
#include <CCommunication.h>
#include <PrintMessage.h>

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

constexpr int FrameSize = 64;
int g_port = 0;
double g_rawRate = 0;
double g_channelRate = 0;

bool readFully(int fd, char *buffer, int size)
{
    int got = 0;
    while (got < size) {
        const ssize_t n = ::recv(fd, buffer + got, size_t(size - got), 0);
        if (n <= 0)
            return false;
        got += int(n);
    }
    return true;
}

void noDelay(int fd)
{
    const int on = 1;
    ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

/// An echo server on 127.0.0.1 answering each 64-byte frame; one thread per connection.
void startEchoServer()
{
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(listener, 8) != 0 ||
        ::getsockname(listener, reinterpret_cast<sockaddr *>(&address), &length) != 0) {
        std::fprintf(stderr, "bench_comm: no loopback listener\n");
        std::exit(EXIT_FAILURE);
    }
    g_port = ntohs(address.sin_port);
    std::thread([listener] {
        for (;;) {
            const int fd = ::accept(listener, nullptr, nullptr);
            if (fd < 0)
                return;
            noDelay(fd);
            std::thread([fd] {
                char frame[FrameSize];
                while (readFully(fd, frame, FrameSize))
                    if (::send(fd, frame, FrameSize, 0) != FrameSize)
                        break;
                ::close(fd);
            }).detach();
        }
    }).detach();
}

double rate(benchmark::State &state, std::chrono::steady_clock::duration elapsed)
{
    const double seconds = std::chrono::duration<double>(elapsed).count();
    return seconds > 0 ? double(state.iterations()) / seconds : 0;
}

void rawSocket(benchmark::State &state)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(quint16(g_port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
        state.SkipWithError("connect failed");
        return;
    }
    char request[FrameSize] = {1, 2, 3};
    char reply[FrameSize];
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state) {
        if (::send(fd, request, FrameSize, 0) != FrameSize || !readFully(fd, reply, FrameSize)) {
            state.SkipWithError("exchange failed");
            break;
        }
    }
    g_rawRate = rate(state, std::chrono::steady_clock::now() - start);
    ::close(fd);
    state.counters["round_trips/s"] =
        benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
}

void channel(benchmark::State &state)
{
    CCommunication comm;
    CCommData data;
    data.m_nKind = CCommData::TcpClient;
    data.m_strIPAddr = "127.0.0.1";
    data.m_nPort = quint16(g_port);
    data.m_nRenewalPeriod = 1 << 30; // no renewal inside the measurement
    if (!comm.CreateComm(data, 0, -1, 0)) {
        state.SkipWithError("CreateComm failed");
        return;
    }
    char request[FrameSize] = {1, 2, 3};
    char reply[FrameSize];
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state) {
        comm.WriteData(data, request, FrameSize);
        int got = 0;
        int idle = 0;
        while (got < FrameSize && idle < 3000) {
            const int n = comm.ReadData(data, reply + got, FrameSize - got, 1);
            got += n;
            idle = n > 0 ? 0 : idle + 1;
        }
        if (got < FrameSize) {
            state.SkipWithError("reply missing");
            break;
        }
    }
    g_channelRate = rate(state, std::chrono::steady_clock::now() - start);
    comm.DeleteComm(data, 0);
    state.counters["round_trips/s"] =
        benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
}

} // namespace

BENCHMARK(rawSocket)->UseRealTime();
BENCHMARK(channel)->UseRealTime();

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    ExternPrintMessageFlag = 0;
    startEchoServer();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    if (g_rawRate > 0)
        std::printf("channel / raw round-trip rate: %.2f (goal >= 0.50)\n",
                    g_channelRate / g_rawRate);
    return EXIT_SUCCESS;
}
