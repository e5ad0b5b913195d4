#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the API reference into build/docs/html (or $VANTOR_BUILD_DIR/docs/html). Installs what
# is missing first, Debian's doxygen included (needs root or sudo then). Fails when doxygen warns,
# for instance about an undocumented public symbol. Extra arguments go to the CMake configure
# step, e.g. -DVANTOR_DOCS_EXCLUDE="src/ipc".
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=${VANTOR_BUILD_DIR:-$top/build}

bash "$top/scripts/install-deps.sh" doxygen

# Configure only when needed or asked: the docs need the configured Doxyfile, not a built library.
if [ ! -f "$build/CMakeCache.txt" ] || [ $# -gt 0 ]; then
    generator=()
    [ -f "$build/CMakeCache.txt" ] || generator=(-G Ninja)
    cmake -S "$top" -B "$build" "${generator[@]}" "$@"
else
    # A cache made before doxygen was installed has no docs target yet.
    cmake "$build" >/dev/null
fi
cmake --build "$build" --target docs
echo "build-docs: $build/docs/html/index.html"
