#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the Debian packages libvantor0 and libvantor-dev into build-deb/ (Release, prefix /usr)
# and checks them with lintian, which must report no errors. Installs what it needs itself.
#   bash scripts/build-deb.sh            # prints the paths of the two .deb files at the end
#   VANTOR_DEB_BUILD_DIR=build-deb-qt6 bash scripts/build-deb.sh -DVANTOR_QT_MAJOR=6
#                                        # libvantor6-0 and libvantor6-dev, for Qt 6
# Further arguments go to CMake.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
bash "$top/scripts/install-deps.sh" dpkg-dev lintian file
build=${VANTOR_DEB_BUILD_DIR:-$top/build-deb}
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
      -DVANTOR_BUILD_TESTS=OFF -DVANTOR_BUILD_EXAMPLES=OFF -DVANTOR_DEBIAN_DOCS=ON "$@" > /dev/null
cmake --build "$build"
rm -f "$build"/*.deb
(cd "$build" && cpack -G DEB > cpack.log) || { cat "$build/cpack.log"; exit 1; }
debs=("$build"/*.deb)
# lintian as root needs --allow-root; errors fail the build, warnings are shown.
lintian_args=(--fail-on error --no-tag-display-limit)
[ "$(id -u)" -ne 0 ] || lintian_args+=(--allow-root)
lintian "${lintian_args[@]}" "${debs[@]}"
printf '%s\n' "${debs[@]}"
