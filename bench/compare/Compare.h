// SPDX-License-Identifier: MIT
#pragma once
// Shared by the side-by-side programs: a clock, the best of several runs, and one printed row
// per comparison. Rows are tab-separated: path, Vantor rate, peer, peer rate, unit, ratio, check.
// scripts/run-benchmarks.sh gathers them into one table.

#include <chrono>
#include <cstdio>
#include <functional>
#include <string>

namespace sidebyside {

inline double seconds(const std::function<void()> &work)
{
    const auto t0 = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

/// Runs `work` `runs` times and keeps the shortest time: the machine is shared, the best run is
/// the one least disturbed by others.
inline double best(int runs, const std::function<void()> &work)
{
    double t = 1e300;
    for (int i = 0; i < runs; ++i) {
        const double s = seconds(work);
        if (s < t)
            t = s;
    }
    return t;
}

inline void row(const std::string &path, double vantor, const std::string &peer, double peerRate,
                const std::string &unit, bool checked)
{
    std::printf("%s\t%.3g\t%s\t%.3g\t%s\t%.2f\t%s\n", path.c_str(), vantor, peer.c_str(), peerRate,
                unit.c_str(), peerRate > 0 ? vantor / peerRate : 0.0, checked ? "ok" : "MISMATCH");
    std::fflush(stdout);
}

} // namespace sidebyside
