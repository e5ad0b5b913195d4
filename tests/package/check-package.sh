#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the built library into a scratch prefix, then builds and runs a small application
# against it twice: once with find_package() and once with pkg-config. QT_MAJOR (5 or 6) names
# the Qt the library was built with: the package, the library file, the header folder and the
# .pc file carry it (Vantor/vantor for Qt 5, Vantor6/vantor6 for Qt 6), so that the two builds
# install side by side; nothing of the other build's names may be installed.
set -euo pipefail
build_dir=$1 src_dir=$2 work=$3
cmake=${CMAKE:-cmake}
cxx=${CXX:-c++}
# The generator the project itself was built with: a fresh machine has Ninja, not make.
generator=${GENERATOR:-Ninja}
major=${QT_MAJOR:-5}
if [ "$major" = 6 ]; then name=Vantor6 other=Vantor; else name=Vantor other=Vantor6; fi
pc=${name,,} other_pc=${other,,}
rm -rf "$work"
mkdir -p "$work"
prefix=$work/prefix

"$cmake" --install "$build_dir" --prefix "$prefix" > "$work/install.log"
libdir=$(find "$prefix" -name "lib$name.so" -printf '%h\n' | head -n 1)
[ -n "$libdir" ] || { echo "lib$name.so was not installed" >&2; exit 1; }
soname=$(objdump -p "$libdir/lib$name.so" | awk '$1 == "SONAME" {print $2}')
[ "$soname" = "lib$name.so.0" ] || { echo "SONAME is '$soname', not lib$name.so.0" >&2; exit 1; }
if [ "$major" = 6 ]; then other_demo=vantor-demo; else other_demo=vantor6-demo; fi
for f in "$libdir/lib$other.so" "$prefix/include/$other" "$libdir/cmake/$other" \
    "$libdir/pkgconfig/$other_pc.pc" "$prefix/bin/$other_demo"; do
    if [ -e "$f" ]; then echo "installed $f, a name of the other Qt's build" >&2; exit 1; fi
done
[ -f "$prefix/include/$name/Vantor.h" ] || { echo "no include/$name/Vantor.h" >&2; exit 1; }

echo "-- find_package($name)"
"$cmake" -S "$src_dir/app" -B "$work/cmake-app" -G "$generator" -DCMAKE_PREFIX_PATH="$prefix" \
    -DVANTOR_PACKAGE="$name" > "$work/cmake-app.log"
"$cmake" --build "$work/cmake-app" > "$work/cmake-build.log"
LD_LIBRARY_PATH="$libdir" "$work/cmake-app/vantor-package-app" | tee "$work/cmake-app.out"
grep -qx "ok qt$major" "$work/cmake-app.out"

echo "-- pkg-config $pc"
export PKG_CONFIG_PATH="$libdir/pkgconfig"
flags=$(pkg-config --cflags --libs "$pc")
# shellcheck disable=SC2086
"$cxx" -std=c++17 -fPIC -o "$work/pc-app" "$src_dir/app/main.cpp" $flags -Wl,-rpath,"$libdir"
"$work/pc-app" | tee "$work/pc-app.out"
grep -qx "ok qt$major" "$work/pc-app.out"
echo "package consumers: both builds ran"
