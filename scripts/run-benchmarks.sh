#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the library in Release, installs it into build-rel/stage, builds the side-by-side
# programs of bench/ against that installed package and prints one table: each hot path beside
# the library a user would pick instead, measured in the same run on the same inputs, with the
# check that both sides produced the same result.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
bash "$top/scripts/install-deps.sh" > /dev/null
build=${VANTOR_BENCH_BUILD_DIR:-$top/build-rel}
stage=$build/stage
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVANTOR_BUILD_TESTS=OFF \
      -DVANTOR_BUILD_EXAMPLES=OFF > /dev/null
cmake --build "$build" > /dev/null
cmake --install "$build" --prefix "$stage" > /dev/null
cmake -S "$top/bench" -B "$build/bench" -G Ninja -DCMAKE_BUILD_TYPE=Release \
      -DCMAKE_PREFIX_PATH="$stage" -DCMAKE_BUILD_RPATH="$stage/lib" > /dev/null
cmake --build "$build/bench" > /dev/null

echo "Machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'); $(date -u '+%Y-%m-%d %H:%M UTC'); load $(cut -d' ' -f1-3 /proc/loadavg)"
echo
echo "| Path | Vantor | Peer | Peer's rate | Unit | Ratio | Results |"
echo "|---|---|---|---|---|---|---|"
for prog in compare_log compare_queue compare_csv compare_crc; do
    "$build/bench/$prog" | while IFS=$'\t' read -r path v peer p unit ratio check; do
        echo "| $path | $v | $peer | $p | $unit | ${ratio}x | $check |"
    done
done
