// The second process of the IPC tests. Commands:
//   add KEY SIZE COUNT N [wait]  adds N records (source 2) to a ring, leaving the taker room;
//                                with "wait", only after a line on standard input
//   take KEY SIZE COUNT N        takes N records and checks their order and bytes
//   init KEY SIZE COUNT          Init() as a second owner would; reports count and first record
//   guard KEY                    RunGuard: RUN (then holds until stdin closes) or BUSY
//   commonsm KEY N               Init() on a CommonSM block of N bytes, prints it in hex
#include "CCommonQueue.h"
#include "CommonSM.h"
#include "RunGuard.h"
#include "queuerecord.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <cstdio>
#include <cstdlib>
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
    const int n = argc > 5 ? std::atoi(argv[5]) : 0;
    CCommonQueue queue(size, argv[2], 0, count, 1);
    if (command == "init") {
        queue.Init();
        const int records = queue.GetCount();
        std::int32_t src = -1, seq = -1;
        const char *first = records > 0 ? queue.Get() : nullptr;
        const bool whole = first && QueueRecord::check(first, size, src, seq);
        std::printf("COUNT %d FIRST %d WHOLE %d\n", records, seq, whole ? 1 : 0);
        return 0;
    }
    if (!queue.GetQueue())
        return 3;
    say("READY");
    if (argc > 6 && !waitLine())
        return 4;
    std::vector<char> buffer(static_cast<size_t>(size));
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < n && !timer.hasExpired(60000);) {
        if (command == "add") {
            if (queue.GetCount() >= count - 8) { // a full ring overwrites
                QThread::yieldCurrentThread();
                continue;
            }
            QueueRecord::fill(buffer.data(), size, 2, i++);
            queue.Add(buffer.data(), nullptr, 10000, 1, nullptr);
        } else if (const char *d = queue.Get(-1, 0, 0, nullptr)) {
            std::int32_t src, seq;
            if (!QueueRecord::check(d, size, src, seq) || seq != i++)
                return 5;
        } else {
            QThread::yieldCurrentThread();
        }
    }
    std::printf("DONE %d\n", timer.hasExpired(60000) ? -1 : n);
    return 0;
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QByteArray command = argc > 2 ? argv[1] : "";
    if ((command == "add" || command == "take" || command == "init") && argc > 4)
        return queueCommand(command, argc, argv);
    if (command == "guard") {
        RunGuard guard(QString::fromUtf8(argv[2]));
        if (!guard.tryToRun()) {
            say("BUSY");
            return 1;
        }
        say("RUN");
        while (waitLine()) { }
        return 0;
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
