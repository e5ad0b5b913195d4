#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the whole suite with ThreadSanitizer in build-tsan/ (next to build/) and runs it with
# CTest. Extra arguments go to ctest, e.g. -R tst_commonqueue. Any report fails its test: the
# run must be clean. Reports that come from inside Qt are suppressed in
# tests/support/tsan.supp, each with its reason.
#   VANTOR_TSAN_BUILD_DIR  the build folder (default: <checkout>/build-tsan)
#   VANTOR_JOBS            parallel build jobs (default: 2)
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=${VANTOR_TSAN_BUILD_DIR:-$top/build-tsan}
start=$SECONDS

cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DVANTOR_SANITIZE=thread -DVANTOR_BUILD_TESTS=ON -DVANTOR_BUILD_EXAMPLES=OFF
cmake --build "$build" --parallel "${VANTOR_JOBS:-2}"

# exitcode: a test with a report fails even when its own checks pass. The tests' environment
# also sets LSAN_OPTIONS (for the address-sanitizer build); ThreadSanitizer ignores it.
export TSAN_OPTIONS="suppressions=$top/tests/support/tsan.supp exitcode=66 second_deadlock_stack=1 history_size=4 ${TSAN_OPTIONS:-}"
export QT_QPA_PLATFORM=offscreen
cd "$build"
# package_consumers builds a program against the installed library with a plain compiler; an
# instrumented library needs its sanitizer runtime linked first, so that test belongs to the
# ordinary build only.
status=0
ctest --output-on-failure -E '^package_consumers$' "$@" || status=$?
echo "run-tsan: $((SECONDS - start)) s, ctest exit status $status"
exit $status
