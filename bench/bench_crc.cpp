// SPDX-License-Identifier: MIT
// CRC-16/MODBUS throughput: the library's table form against its bitwise form and Boost's
// table-driven crc_optimal, on 256-byte frames and 1 MiB buffers.
#include <CCrc.h>

#include <benchmark/benchmark.h>
#include <boost/crc.hpp>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

namespace {

using BoostModbus = boost::crc_optimal<16, 0x8005, 0xFFFF, 0, true, true>;

std::vector<unsigned char> frame(std::size_t size)
{
    std::vector<unsigned char> data(size);
    std::mt19937 rng(42);
    for (auto &b : data)
        b = static_cast<unsigned char>(rng());
    return data;
}

void tableForm(benchmark::State &state)
{
    auto data = frame(std::size_t(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(CCrc::GetCrc16_15_2_1(data.data(), int(data.size())));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void bitwiseForm(benchmark::State &state)
{
    auto data = frame(std::size_t(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(CCrc::GetCrc16_15_13_1(data.data(), int(data.size())));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void boostOptimal(benchmark::State &state)
{
    auto data = frame(std::size_t(state.range(0)));
    for (auto _ : state) {
        BoostModbus crc;
        crc.process_bytes(data.data(), data.size());
        benchmark::DoNotOptimize(crc.checksum());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

// The three must agree before their speeds mean anything.
bool sameResults()
{
    auto data = frame(4096);
    BoostModbus crc;
    crc.process_bytes(data.data(), data.size());
    const int expected = crc.checksum();
    const int table = CCrc::GetCrc16_15_2_1(data.data(), int(data.size()));
    return CCrc::GetCrc16_15_13_1(data.data(), int(data.size())) == expected &&
        table == (((expected & 0xFF) << 8) | (expected >> 8));
}

} // namespace

BENCHMARK(tableForm)->Arg(256)->Arg(1 << 20);
BENCHMARK(bitwiseForm)->Arg(256)->Arg(1 << 20);
BENCHMARK(boostOptimal)->Arg(256)->Arg(1 << 20);

int main(int argc, char **argv)
{
    if (!sameResults()) {
        std::fprintf(stderr, "bench_crc: the CRC forms disagree\n");
        return EXIT_FAILURE;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
