// SPDX-License-Identifier: MIT
// The taking side of bench_queue: opens the queue by key, says READY, takes records until one
// whose first four bytes hold -1, and prints how many it took before that.
#include "CCommonQueue.h"

#include <QByteArray>
#include <QThread>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

int main(int argc, char **argv)
{
    if (argc < 4)
        return 2;
    const int size = std::atoi(argv[2]);
    CCommonQueue queue(size, argv[1], 0, std::atoi(argv[3]), 1);
    if (!queue.GetQueue())
        return 3;
    std::printf("READY\n");
    std::fflush(stdout);
    long long taken = 0;
    std::vector<char> copy(size_t(size > 4 ? size : 4));
    for (;;) {
        const char *data = queue.Get(-1, 0, 0, nullptr);
        if (!data) {
            QThread::yieldCurrentThread();
            continue;
        }
        std::memcpy(copy.data(), data, size_t(size)); // a taker keeps what it takes
        std::int32_t first;
        std::memcpy(&first, copy.data(), 4);
        if (first == -1)
            break;
        ++taken;
    }
    std::printf("%lld\n", taken);
    return 0;
}
