#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Quick start (2): installs what is missing, builds the library and its tests, and runs every
# test with CTest (no display needed).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
bash "$top/scripts/install-deps.sh"
build=${VANTOR_BUILD_DIR:-$top/build}
VANTOR_BUILD_DIR=$build bash "$top/scripts/build.sh" -DVANTOR_BUILD_TESTS=ON -DVANTOR_BUILD_EXAMPLES=ON "$@"
export QT_QPA_PLATFORM=offscreen
cd "$build"
ctest --output-on-failure --timeout 600 -j "$(nproc)"
