// SPDX-License-Identifier: MIT
// PrintMessage on the log path: format one line and copy its 2,048-byte record into the ring,
// from one and from four threads at once. No writer runs, so the ring stays full and every call
// also drops the oldest record, the steady state of a busy log.
#include "PrintMessage.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

static void BM_PrintMessageToRing(benchmark::State &state)
{
    int i = 0;
    for (auto _ : state)
        PrintMessage("[%d] pump %d pressure %.2f bar\r\n", state.thread_index(), ++i, 3.25);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PrintMessageToRing)->Threads(1)->Threads(4)->UseRealTime();

int main(int argc, char **argv)
{
    QTemporaryDir dir;
    if (!dir.isValid())
        return 1;
    ExternPrintMessageFlag = 0;
    SetLogFile(QFile::encodeName(dir.filePath(QStringLiteral("bench.log"))).constData(), 0);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
