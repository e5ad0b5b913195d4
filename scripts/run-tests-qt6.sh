#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The Quick-start test command against Qt 6: installs what is missing, builds the library and its
# tests with -DVANTOR_QT_MAJOR=6 in build-qt6/ and runs every test with CTest (no display needed).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
bash "$top/scripts/install-deps.sh"
build=${VANTOR_QT6_BUILD_DIR:-$top/build-qt6}
VANTOR_BUILD_DIR=$build bash "$top/scripts/build.sh" -DVANTOR_QT_MAJOR=6 \
    -DVANTOR_BUILD_TESTS=ON -DVANTOR_BUILD_EXAMPLES=ON "$@"
export QT_QPA_PLATFORM=offscreen
cd "$build"
ctest --output-on-failure --timeout 600 -j "$(nproc)"
