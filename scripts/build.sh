#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Configures and builds the library (and its tests) in build/ with Ninja. Extra arguments go to
# the CMake configure step, e.g. -DVANTOR_SANITIZE=address,undefined.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=${VANTOR_BUILD_DIR:-$top/build}
cmake -S "$top" -B "$build" -G Ninja "$@"
cmake --build "$build" --parallel "$(nproc)"
