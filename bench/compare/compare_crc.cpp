// SPDX-License-Identifier: MIT
// CRC-16/ARC, MODBUS and DNP over the same 1 MiB buffer: the library against Boost.CRC.
#include "Compare.h"

#include <CCrc.h>

#include <boost/crc.hpp>

#include <random>
#include <vector>

int main()
{
    std::vector<unsigned char> data(1 << 20);
    std::mt19937 rng(7);
    for (auto &b : data)
        b = static_cast<unsigned char>(rng());
    const int len = int(data.size());
    const double mb = double(data.size()) / 1e6;
    constexpr int reps = 20;

    auto pair = [&](const char *name, auto vantorSum, auto boostSum) {
        int v = 0, b = 0;
        const double tv = sidebyside::best(5, [&] {
            for (int i = 0; i < reps; ++i)
                v = vantorSum();
        });
        const double tb = sidebyside::best(5, [&] {
            for (int i = 0; i < reps; ++i)
                b = boostSum();
        });
        sidebyside::row(name, reps * mb / tv, "boost::crc", reps * mb / tb, "MB/s", v == b);
    };
    pair(
        "CRC-16 ARC", [&] { return CCrc::GetCrc16_5_2_1(data.data(), len); },
        [&] {
            boost::crc_16_type c;
            c.process_bytes(data.data(), data.size());
            return int(c.checksum());
        });
    // The library returns MODBUS byte-exchanged, as the frame carries it.
    pair(
        "CRC-16 MODBUS", [&] { return CCrc::GetCrc16_15_2_1(data.data(), len); },
        [&] {
            boost::crc_optimal<16, 0x8005, 0xFFFF, 0, true, true> c;
            c.process_bytes(data.data(), data.size());
            const int s = int(c.checksum());
            return ((s & 0xFF) << 8) | (s >> 8);
        });
    return 0;
}
