// SPDX-License-Identifier: MIT
// CCommonQueue throughput in records per second with 64-byte and 2,048-byte records:
// - TwoProcesses: this process adds to a shared, locked ring of 4,096 slots while a second
//   process (queue_taker) takes; an iteration is a batch of 10,000 records, timed until the
//   taker has drained the ring.
// - SameThread: Add then Get on a private locked ring in one thread, for comparison.
#include "CCommonQueue.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace {

constexpr int kSlots = 4096;
constexpr int kBatch = 10000;

void TwoProcesses(benchmark::State &state)
{
    const int size = int(state.range(0));
    static int run = 0;
    const QByteArray key =
        "vantor-bench-queue-" + QByteArray::number(size) + "-" + QByteArray::number(++run);
    CCommonQueue queue(size, key.constData(), 0, kSlots, 1);
    queue.Init();

    QProcess peer;
    peer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    peer.start(QStringLiteral(QUEUE_TAKER_PATH),
               {QString::fromLatin1(key), QString::number(size), QString::number(kSlots)});
    while (peer.state() != QProcess::NotRunning && !peer.canReadLine())
        peer.waitForReadyRead(1000);
    if (peer.readLine().trimmed() != "READY") {
        state.SkipWithError("the taking process did not start");
        return;
    }

    std::vector<char> record(size_t(size), 'r');
    std::int32_t seq = 0;
    long long added = 0;
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < kBatch; ++i) {
            // Leave the taker room: a full ring would overwrite.
            while (queue.GetCount() >= kSlots - 2)
                QThread::yieldCurrentThread();
            std::memcpy(record.data(), &seq, 4);
            seq = (seq + 1) & 0x3fffffff;
            queue.Add(record.data(), nullptr, 10000, 1, nullptr);
        }
        while (queue.GetCount() > 0)
            QThread::yieldCurrentThread();
        state.SetIterationTime(double(timer.nsecsElapsed()) / 1e9);
        added += kBatch;
    }

    const std::int32_t stop = -1;
    std::memcpy(record.data(), &stop, 4);
    queue.Add(record.data(), nullptr, 10000, 1, nullptr);
    peer.waitForFinished(60000);
    const long long taken = peer.readAll().trimmed().toLongLong();
    if (taken != added)
        state.SkipWithError("the taking process lost records");
    state.SetItemsProcessed(added);
    state.counters["records/s"] = benchmark::Counter(double(added), benchmark::Counter::kIsRate);
}
BENCHMARK(TwoProcesses)->Arg(64)->Arg(2048)->UseManualTime()->Unit(benchmark::kMillisecond);

void SameThread(benchmark::State &state)
{
    const int size = int(state.range(0));
    CCommonQueue queue(size, "", 0, kSlots, 1);
    std::vector<char> record(size_t(size), 'r');
    std::vector<char> copy(static_cast<size_t>(size));
    for (auto _ : state) {
        queue.Add(record.data(), nullptr, 10000, 1, nullptr);
        const char *data = queue.Get(-1, 0, 0, nullptr);
        std::memcpy(copy.data(), data, size_t(size));
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["records/s"] =
        benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(SameThread)->Arg(64)->Arg(2048);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    // Segment keys are files in the temporary folder: a folder of our own for us and the peer.
    QTemporaryDir dir;
    if (!dir.isValid())
        return 1;
    qputenv("TMPDIR", QFile::encodeName(dir.path()));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
