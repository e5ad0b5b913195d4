#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Quick start (1): installs what is missing, builds and installs the library into a staging
# prefix, builds the examples against that installed package, runs the plant monitor for a few
# seconds against its simulated device and then the tour of every subsystem.
# Arguments are passed to the tour (e.g. --gui when a display is present).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
bash "$top/scripts/install-deps.sh"
build=${VANTOR_BUILD_DIR:-$top/build}
stage=$build/stage
VANTOR_BUILD_DIR=$build bash "$top/scripts/build.sh" -DVANTOR_BUILD_TESTS=OFF -DVANTOR_BUILD_EXAMPLES=OFF
cmake --install "$build" --prefix "$stage" > /dev/null
cmake -S "$top/examples" -B "$build/examples" -G Ninja -DCMAKE_PREFIX_PATH="$stage" \
      -DCMAKE_INSTALL_RPATH="$stage/lib" -DCMAKE_BUILD_RPATH="$stage/lib" > /dev/null
cmake --build "$build/examples"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
"$build/examples/vantor-plant-monitor" --seconds "${VANTOR_MONITOR_SECONDS:-5}" \
    --data "$build/plant-monitor-data"
exec "$build/examples/vantor-demo" "$@"
