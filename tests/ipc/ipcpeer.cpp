// SPDX-License-Identifier: MIT
// The second process of the IPC tests. Commands:
//   add KEY SIZE COUNT N [wait]  Init(), then adds N records (source 2) to a ring, leaving the
//                                taker room; with "wait", only after a line on standard input
//   take KEY SIZE COUNT N        Init(), then takes N records and checks their order and bytes
//   hold KEY SIZE COUNT N        takes the lock that Add takes, then - as an Add killed half-way
//                                would - fills the first N bytes of the slot at EndPos with 0x5A
//                                (the 12-byte header first); prints HELD and waits to be killed
//   guard KEY                    RunGuard: RUN (then holds until stdin closes) or BUSY
//   commonsm KEY N               Init() on a CommonSM block of N bytes, prints it in hex
#include "CCommonQueue.h"
#include "CommonSM.h"
#include "RunGuard.h"
#include "queuerecord.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

static void say(const char *line)
{
    std::printf("%s\n", line);
    std::fflush(stdout);
}

static bool waitLine()
{
    char line[64];
    return std::fgets(line, sizeof line, stdin) != nullptr;
}

static int queueCommand(const QByteArray &command, int argc, char **argv)
{
    const int size = std::atoi(argv[3]);
    const int count = std::atoi(argv[4]);
    const int n = std::atoi(argv[5]);
    CCommonQueue queue(size, argv[2], 0, count, 1);
    queue.Init(); // as a second owner would: the live queue stays as it is
    if (!queue.GetQueue())
        return 3;
    if (command == "hold") {
        if (!queue.lock())
            return 6;
        char *slot = queue.GetMem(queue.GetQueue()) + queue.GetQueue()->EndPos * (size + 12);
        std::memset(slot, 0x5A, size_t(std::min(n, size + 12)));
        say("HELD");
        while (waitLine()) { } // until killed, or until the test's end closes our input
        return 0;
    }
    say("READY");
    if (argc > 6 && !waitLine())
        return 4;
    std::vector<char> buffer(static_cast<size_t>(size));
    QDeadlineTimer limit(60000);
    for (int i = 0; i < n && !limit.hasExpired(); QThread::yieldCurrentThread()) {
        // A full ring overwrites: leave the taker room.
        for (; command == "add" && i < n && queue.GetCount() < count - 8; ++i) {
            QueueRecord::fill(buffer.data(), size, 2, i);
            queue.Add(buffer.data(), nullptr, 10000, 1, nullptr);
        }
        for (const char *d; command == "take" && (d = queue.Get(-1, 0, 0, nullptr)); ++i) {
            std::int32_t src, seq;
            if (!QueueRecord::check(d, size, src, seq) || seq != i)
                return 5;
        }
    }
    std::printf("DONE %d\n", limit.hasExpired() ? -1 : n);
    return 0;
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QByteArray command = argc > 2 ? argv[1] : "";
    if ((command == "add" || command == "take" || command == "hold") && argc > 5)
        return queueCommand(command, argc, argv);
    if (command == "guard") {
        RunGuard guard(QString::fromUtf8(argv[2]));
        const bool runs = guard.tryToRun();
        say(runs ? "RUN" : "BUSY");
        while (runs && waitLine()) { }
        return runs ? 0 : 1;
    }
    if (command == "commonsm" && argc > 3) {
        const int size = std::atoi(argv[3]);
        CommonSM block(size, QString::fromLatin1(argv[2]));
        if (!block.Init())
            return 3;
        say(QByteArray(static_cast<const char *>(block.Get()), size).toHex().constData());
        return 0;
    }
    return 2;
}
