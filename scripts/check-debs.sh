#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the Debian packages (scripts/build-deb.sh), installs them with apt on THIS system and
# builds the small program of tests/package/app against the installed packages twice: with
# find_package(Vantor) and with pkg-config. Meant for a throwaway root: scripts/check-fresh.sh
# runs it in its new Debian 12 root (`bash scripts/check-fresh.sh packages`).
#   bash scripts/check-debs.sh      # the Qt 5 packages: libvantor0, libvantor-dev
#   bash scripts/check-debs.sh 6    # the Qt 6 packages: libvantor6-0, libvantor6-dev
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
qt=${1:-5}
case $qt in
    5) suffix= ; debdir=$top/build-deb ;;
    6) suffix=6 ; debdir=$top/build-deb-qt6 ;;
    *) echo "usage: $0 [5|6]" >&2; exit 2 ;;
esac
lib=libvantor${suffix}${suffix:+-}0
mapfile -t debs < <(VANTOR_DEB_BUILD_DIR=$debdir bash "$top/scripts/build-deb.sh" \
                        -DVANTOR_QT_MAJOR="$qt" | grep '\.deb$')
sudo=; [ "$(id -u)" -eq 0 ] || sudo=sudo
$sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${debs[@]}" > /dev/null
dpkg -s "$lib" "libvantor$suffix-dev" | grep -E '^(Package|Version|Status):'
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo "-- find_package(Vantor$suffix) from /usr"
cmake -S "$top/tests/package/app" -B "$work/cmake-app" -G Ninja -DVANTOR_PACKAGE="Vantor$suffix" \
    > /dev/null
cmake --build "$work/cmake-app" > /dev/null
"$work/cmake-app/vantor-package-app" | tee "$work/cmake.out"
# The program prints the Qt major it was built with: it must be the packages' own.
grep -qx "ok qt$qt" "$work/cmake.out"

echo "-- pkg-config vantor$suffix"
# Qt's headers need position-independent code, as with Qt's own pkg-config files.
# shellcheck disable=SC2046
g++ -std=c++17 -fPIC -o "$work/pc-app" "$top/tests/package/app/main.cpp" \
    $(pkg-config --cflags --libs "vantor$suffix")
"$work/pc-app" | tee "$work/pc.out"
grep -qx "ok qt$qt" "$work/pc.out"
echo "check-debs: both programs built against the installed Qt $qt packages and ran"
