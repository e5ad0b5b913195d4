#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the Debian packages (scripts/build-deb.sh), installs them with apt on THIS system and
# builds the small program of tests/package/app against the installed packages twice: with
# find_package(Vantor) and with pkg-config. Meant for a throwaway root: scripts/check-fresh.sh
# runs it in its new Debian 12 root (`bash scripts/check-fresh.sh packages`).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
mapfile -t debs < <(bash "$top/scripts/build-deb.sh" | grep '\.deb$')
sudo=; [ "$(id -u)" -eq 0 ] || sudo=sudo
$sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${debs[@]}" > /dev/null
dpkg -s libvantor0 libvantor-dev | grep -E '^(Package|Version|Status):'
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo "-- find_package(Vantor) from /usr"
cmake -S "$top/tests/package/app" -B "$work/cmake-app" -G Ninja > /dev/null
cmake --build "$work/cmake-app" > /dev/null
"$work/cmake-app/vantor-package-app" | tee "$work/cmake.out"
grep -q '^ok$' "$work/cmake.out"

echo "-- pkg-config vantor"
# Qt's headers need position-independent code, as with Qt's own pkg-config files.
# shellcheck disable=SC2046
g++ -std=c++17 -fPIC -o "$work/pc-app" "$top/tests/package/app/main.cpp" \
    $(pkg-config --cflags --libs vantor)
"$work/pc-app" | tee "$work/pc.out"
grep -q '^ok$' "$work/pc.out"
echo "check-debs: both programs built against the installed packages and ran"
