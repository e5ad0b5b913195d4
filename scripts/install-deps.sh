#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Debian 12 packages that building, testing and running the examples need.
# Idempotent: only packages that are missing are installed. Needs root (or sudo). Package names
# given as arguments are installed too (the docs and packaging scripts name theirs).
set -euo pipefail

packages=(
    cmake ninja-build g++ pkg-config ccache
    qtbase5-dev qtbase5-dev-tools qttools5-dev qttools5-dev-tools libqt5serialport5-dev
    # the Qt 6 build (scripts/run-tests-qt6.sh); its text codecs come from Core5Compat
    qt6-base-dev qt6-base-dev-tools qt6-5compat-dev qt6-serialport-dev qt6-tools-dev
    libbenchmark-dev libboost-dev
    libxml2-utils xvfb xauth
    # communication tests: serial pty pairs, namespaces, a real Modbus device
    socat iproute2 python3-pymodbus python3-serial python3-serial-asyncio
    # database: Qt drivers, real servers and ODBC drivers for the tests
    libqt5sql5-psql libqt5sql5-mysql libqt5sql5-odbc libqt5sql5-sqlite
    libqt6sql6-psql libqt6sql6-mysql libqt6sql6-odbc
    postgresql-15 mariadb-server mariadb-client unixodbc odbc-postgresql odbc-mariadb libsqliteodbc
    # the ABI guard test
    abigail-tools
)
packages+=("$@")

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done
if [ ${#missing[@]} -eq 0 ]; then
    echo "install-deps: everything is installed"
    exit 0
fi

sudo=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "install-deps: need root or sudo for: ${missing[*]}" >&2; exit 1; }
    sudo=(sudo)
fi
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
