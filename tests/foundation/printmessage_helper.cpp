// SPDX-License-Identifier: MIT
// Runs one message-log scenario in a process of its own, so that the test reads exactly what
// reaches standard output, and what the library writes to the log file as it is unloaded.
#include "PrintMessage.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

static std::string received;
static void collect(CString text)
{
    received += text.GetData();
}

int main(int argc, char **argv)
{
    const std::string scenario = argc > 1 ? argv[1] : "";
    if (scenario == "count") {
        PrintMessage("%d items\n", 3);
    } else if (scenario == "long") {
        PrintMessage("%s|", std::string(5000, 'x').c_str());
    } else if (scenario == "callback") {
        SetPrintMessageFunction(collect);
        PrintMessage("to callback %d\n", 1);
        std::printf("got: %s", received.c_str());
    } else if (argc > 2 && (scenario == "unload" || scenario == "overflow")) {
        // The writer starts before the messages, or after the ring has overflowed; main returns
        // at once and the library writes the queue out as it is unloaded.
        ExternPrintMessageFlag = 0;
        SetLogFile(argv[2], 0);
        const bool early = scenario == "unload";
        if (early)
            StartPrintMessageThread();
        for (int i = 1; i <= (early ? 5000 : 12000); ++i)
            PrintMessage("message %05d\n", i);
        StartPrintMessageThread();
    } else if (argc > 2 && scenario == "threads") {
        // Eight threads, started together, overflow the ring while no writer runs; the library
        // writes out what the ring kept as it is unloaded.
        ExternPrintMessageFlag = 0;
        SetLogFile(argv[2], 0);
        std::atomic<int> ready {0};
        std::vector<std::thread> threads;
        for (int t = 0; t < 8; ++t)
            threads.emplace_back([t, &ready] {
                for (++ready; ready < 8;)
                    std::this_thread::yield();
                for (int i = 0; i < 1300; ++i)
                    PrintMessage("T%d %05d %s\n", t, i, std::string(40, char('a' + t)).c_str());
            });
        for (std::thread &t : threads)
            t.join();
        StartPrintMessageThread();
    } else if (argc > 2 && scenario == "prompt") {
        // Prints the milliseconds a message takes to reach the file while the writer idles, and
        // those a stop request takes to end the idle writer (the restart joins it).
        ExternPrintMessageFlag = 0;
        SetLogFile(argv[2], 0);
        StartPrintMessageThread();
        QThread::msleep(200);
        QElapsedTimer timer;
        timer.start();
        PrintMessage("prompt\n");
        QFile file(QString::fromLocal8Bit(argv[2]));
        while (file.size() < 7 && timer.elapsed() < 5000)
            QThread::msleep(1);
        const qint64 written = file.size() < 7 ? -1 : timer.elapsed();
        QThread::msleep(200);
        timer.restart();
        ClosePrintMessageThread();
        StartPrintMessageThread();
        std::printf("%lld %lld\n", static_cast<long long>(written),
                    static_cast<long long>(timer.elapsed()));
        ClosePrintMessageThread();
    } else {
        return 2;
    }
    return 0;
}
