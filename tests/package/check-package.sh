#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the built library into a scratch prefix, then builds and runs a small application
# against it twice: once with find_package(Vantor) and once with pkg-config.
set -euo pipefail
build_dir=$1 src_dir=$2 work=$3
cmake=${CMAKE:-cmake}
cxx=${CXX:-c++}
# The generator the project itself was built with: a fresh machine has Ninja, not make.
generator=${GENERATOR:-Ninja}
rm -rf "$work"
mkdir -p "$work"
prefix=$work/prefix

"$cmake" --install "$build_dir" --prefix "$prefix" > "$work/install.log"
libdir=$(find "$prefix" -name 'libVantor.so' -printf '%h\n' | head -n 1)

echo "-- find_package(Vantor)"
"$cmake" -S "$src_dir/app" -B "$work/cmake-app" -G "$generator" -DCMAKE_PREFIX_PATH="$prefix" > "$work/cmake-app.log"
"$cmake" --build "$work/cmake-app" > "$work/cmake-build.log"
LD_LIBRARY_PATH="$libdir" "$work/cmake-app/vantor-package-app" | tee "$work/cmake-app.out"
grep -q '^ok$' "$work/cmake-app.out"

echo "-- pkg-config vantor"
export PKG_CONFIG_PATH="$libdir/pkgconfig"
flags=$(pkg-config --cflags --libs vantor)
# shellcheck disable=SC2086
"$cxx" -std=c++17 -fPIC -o "$work/pc-app" "$src_dir/app/main.cpp" $flags -Wl,-rpath,"$libdir"
"$work/pc-app" | tee "$work/pc-app.out"
grep -q '^ok$' "$work/pc-app.out"
echo "package consumers: both builds ran"
