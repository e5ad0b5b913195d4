#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The ABI guard: compares the built library with the baseline kept in abi/ (an abidw dump of the
# last released ABI, gzip-compressed) and fails on any change that breaks programs built
# against the baseline. Additions pass, and are listed.
#
#   bash scripts/abi-check.sh BUILD_DIR            # check (run by the CTest test abi_compatible)
#   bash scripts/abi-check.sh BUILD_DIR --update   # rewrite the baseline on purpose
#
# --update refuses an incompatible baseline for an unchanged SONAME: raise the project's major
# version in CMakeLists.txt first (it is the SONAME), rebuild, then update; the new baseline is
# then stored under the new SONAME's name and the old one is removed.
# Needs abidw/abidiff (Debian's abigail-tools) and a build with debug information
# (RelWithDebInfo, the default, or Debug).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "$1" && pwd)
mode=${2:-check}
command -v abidiff > /dev/null || { echo "abi-check: abidiff not found (abigail-tools)" >&2; exit 2; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The library as installed (libVantor.so.0, or libVantor6.so.0 from the Qt 6 build).
cmake --install "$build" --prefix "$work/prefix" --component runtime > /dev/null
lib=$(find "$work/prefix" -name 'libVantor*.so.*.*' -type f | head -n 1)
soname=$(objdump -p "$lib" | awk '/SONAME/ {print $2}')
baseline=$top/abi/$soname.abi.gz
# Every type reachable from an exported function or variable is recorded in full (a filter on
# the public headers would lose the definitions of classes such as CCommonQueue to mere
# declarations, and with them their size and members).
dump() {
    abidw --no-corpus-path --no-comp-dir-path --no-show-locs --out-file "$1" "$lib"
}
# Fails unless the comparison in $1 (abidiff's exit code $2) shows additions at most: a removed
# or changed function or variable, or a changed type under one, breaks built programs.
judge() {
    local rc=$2
    if [ $((rc & 3)) -ne 0 ]; then echo "abi-check: abidiff failed ($rc)" >&2; return 2; fi
    [ $((rc & 12)) -eq 0 ] && return 0
    [ $((rc & 8)) -ne 0 ] && return 1
    ! grep -E 'changes summary: ' "$1" | grep -qE '(^|[^0-9])[1-9][0-9]* (Removed|Changed)'
}

if [ "$mode" = --update ]; then
    dump "$work/new.abi"
    # The Qt 5 and Qt 6 libraries (libVantor.so.N, libVantor6.so.N) keep their baselines side by
    # side; only an earlier SONAME of the same library is replaced.
    old=$(find "$top/abi" -name "${soname%%.so.*}.so.*.abi.gz" 2> /dev/null | head -n 1)
    if [ -n "$old" ] && [ "$old" = "$baseline" ]; then
        rc=0
        gzip -dc "$old" > "$work/old.abi"
        abidiff --no-show-locs "$work/old.abi" "$work/new.abi" > "$work/diff.txt" || rc=$?
        if ! judge "$work/diff.txt" $rc; then
            cat "$work/diff.txt"
            echo "abi-check: incompatible with $soname's baseline; raise the major version first" >&2
            exit 1
        fi
    fi
    [ -z "$old" ] || [ "$old" = "$baseline" ] || git -C "$top" rm -q "$old" 2> /dev/null || rm -f "$old"
    mkdir -p "$top/abi"
    gzip -n -9 -c "$work/new.abi" > "$baseline"
    echo "abi-check: baseline $baseline written"
    exit 0
fi

[ -f "$baseline" ] || { echo "abi-check: no baseline for $soname in abi/ (run with --update)" >&2; exit 1; }
gzip -dc "$baseline" > "$work/baseline.abi"
rc=0
abidiff --no-show-locs "$work/baseline.abi" "$lib" > "$work/diff.txt" || rc=$?
cat "$work/diff.txt"
verdict=0
judge "$work/diff.txt" $rc || verdict=$?
if [ $verdict -eq 1 ]; then
    echo "abi-check: FAIL: the change above breaks programs built against $soname" >&2
    exit 1
elif [ $verdict -ne 0 ]; then
    exit 1
fi
echo "abi-check: compatible with the $soname baseline$([ $((rc & 4)) -ne 0 ] && echo ' (additions only)')"
