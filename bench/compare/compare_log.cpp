// SPDX-License-Identifier: MIT
// The message log against spdlog, the same message text on both sides:
// - into the ring: PrintMessage with the log writer running, against an spdlog asynchronous
//   logger (8,192 slots, the oldest message gives way) writing to a file; 1 and 4 threads;
// - to disk: bursts of 8,000 messages (below the ring's capacity), each timed until every byte is
//   in the file, against spdlog's daily file sink written synchronously and flushed.
// Checks: every line in every file is whole; the two disk files are byte for byte the same.
#include "Compare.h"

#include <PrintMessage.h>

#include <spdlog/async.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/daily_file_sink.h>
#include <spdlog/spdlog.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

const char *const kFormat = "[%d] pump %d pressure %.2f bar\r\n";

long long fileSize(const QString &path)
{
    struct stat st;
    return ::stat(QFile::encodeName(path).constData(), &st) == 0 ? st.st_size : -1;
}

/// Waits until the file has stopped growing for 300 ms.
void settle(const QString &path)
{
    long long last = -2;
    int still = 0;
    while (still < 30) {
        const long long now = fileSize(path);
        still = now == last ? still + 1 : 0;
        last = now;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

/// Every line is one whole message; returns the number of lines, -1 if one is not.
long long wholeLines(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    static const QRegularExpression line(
        QStringLiteral("^\\[\\d+\\] pump \\d+ pressure 3\\.25 bar\\r$"));
    long long n = 0;
    for (const QByteArray &l : f.readAll().split('\n')) {
        if (l.isEmpty())
            continue;
        if (!line.match(QString::fromLatin1(l)).hasMatch())
            return -1;
        ++n;
    }
    return n;
}

void runThreads(int threads, const std::function<void(int)> &body)
{
    std::vector<std::thread> pool;
    for (int t = 0; t < threads; ++t)
        pool.emplace_back(body, t);
    for (auto &th : pool)
        th.join();
}

std::unique_ptr<spdlog::formatter> bareFormatter()
{
    // The message alone, no time stamp, no level, no line end: the text carries its own.
    return std::make_unique<spdlog::pattern_formatter>("%v", spdlog::pattern_time_type::local,
                                                       std::string());
}

void ring(const QDir &dir, int threads, int perThread)
{
    const QString vantorFile = dir.filePath(QStringLiteral("ring-%1.txt").arg(threads));
    SetLogFile(QFile::encodeName(vantorFile).constData(), 0);
    StartPrintMessageThread();
    const double tv = sidebyside::seconds([&] {
        runThreads(threads, [&](int t) {
            for (int i = 0; i < perThread; ++i)
                PrintMessage(kFormat, t, i, 3.25);
        });
    });
    settle(vantorFile);
    ClosePrintMessageThread();

    const QString peerFile = dir.filePath(QStringLiteral("spdlog-ring-%1.txt").arg(threads));
    spdlog::init_thread_pool(8192, 1);
    auto logger = spdlog::create_async_nb<spdlog::sinks::basic_file_sink_mt>(
        "ring" + std::to_string(threads), peerFile.toStdString(), true);
    logger->set_formatter(bareFormatter());
    const double tp = sidebyside::seconds([&] {
        runThreads(threads, [&](int t) {
            for (int i = 0; i < perThread; ++i)
                logger->info("[{}] pump {} pressure {:.2f} bar\r\n", t, i, 3.25);
        });
    });
    logger->flush();
    spdlog::drop_all();
    spdlog::shutdown();
    settle(peerFile);

    const double total = double(threads) * perThread;
    const bool ok = wholeLines(vantorFile) > 0 && wholeLines(peerFile) > 0;
    sidebyside::row("log ring, writer running, " + std::to_string(threads) + " thread(s)",
                    total / tv / 1e6, "spdlog async", total / tp / 1e6, "M msg/s", ok);
}

void disk(const QDir &dir, int bursts, int perBurst)
{
    const QString vantorFile = dir.filePath(QStringLiteral("disk.txt"));
    SetLogFile(QFile::encodeName(vantorFile).constData(), 0);
    StartPrintMessageThread();
    long long expected = 0;
    char line[128];
    double tv = 0;
    for (int b = 0; b < bursts; ++b) {
        for (int i = 0; i < perBurst; ++i)
            expected += std::snprintf(line, sizeof line, kFormat, b, i, 3.25);
        tv += sidebyside::seconds([&] {
            for (int i = 0; i < perBurst; ++i)
                PrintMessage(kFormat, b, i, 3.25);
            while (fileSize(vantorFile) < expected)
                std::this_thread::yield();
        });
    }
    ClosePrintMessageThread();

    QDir peerDir(dir.filePath(QStringLiteral("spdlog-disk")));
    peerDir.mkpath(QStringLiteral("."));
    auto logger =
        spdlog::daily_logger_mt("disk", peerDir.filePath(QStringLiteral("disk.txt")).toStdString());
    logger->set_formatter(bareFormatter());
    double tp = 0;
    for (int b = 0; b < bursts; ++b) {
        tp += sidebyside::seconds([&] {
            for (int i = 0; i < perBurst; ++i)
                logger->info("[{}] pump {} pressure {:.2f} bar\r\n", b, i, 3.25);
            logger->flush();
        });
    }
    spdlog::drop_all();
    const QStringList peerFiles = peerDir.entryList(QDir::Files);
    QFile a(vantorFile), p(peerFiles.isEmpty() ? QString() : peerDir.filePath(peerFiles.first()));
    const bool ok = a.open(QIODevice::ReadOnly) && p.open(QIODevice::ReadOnly) &&
        a.size() == expected && a.readAll() == p.readAll();
    const double total = double(bursts) * perBurst;
    sidebyside::row("log to disk, bursts of 8,000", total / tv / 1e6, "spdlog daily file sink",
                    total / tp / 1e6, "M msg/s", ok);
}

} // namespace

int main()
{
    QTemporaryDir tmp;
    if (!tmp.isValid())
        return 1;
    QDir dir(tmp.path());
    ExternPrintMessageFlag = 0;
    ring(dir, 1, 1000000);
    ring(dir, 4, 500000);
    disk(dir, 25, 8000);
    return 0;
}
