#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds vantor-screenshots and runs it on a virtual X display (Xvfb), writing PNG pictures of
# the message dialog, the question dialog, the waiting window and the database settings dialog
# into docs/images/.
# Needs xvfb and xauth (scripts/install-deps.sh installs them).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=${VANTOR_BUILD_DIR:-$top/build}
out=${1:-$top/docs/images}
cmake -S "$top" -B "$build" -G Ninja -DVANTOR_BUILD_EXAMPLES=ON > /dev/null
cmake --build "$build" --target vantor-screenshots
mkdir -p "$out"
QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x1024x24" \
    "$build/examples/screenshots/vantor-screenshots" "$out"
