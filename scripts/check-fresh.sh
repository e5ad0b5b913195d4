#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs the README's two Quick-start commands in a new minimal Debian 12 root, as on a machine
# that has only the base system, git, sudo and ca-certificates: no make, no compiler, no Qt
# until the project's own scripts install them. Not part of CI (it takes a while); run it before
# changing dependencies or scripts.
#
#   bash scripts/check-fresh.sh            # both Quick-start commands, then the packages
#   bash scripts/check-fresh.sh example    # only the first (or: tests, only the second;
#                                          # packages: the Qt 5 and Qt 6 Debian packages
#                                          # built, installed side by side and used by a
#                                          # small program, scripts/check-debs.sh)
#
# Needs root (debootstrap, chroot, mounts). The minimal root is cached as a tarball in
# $VANTOR_FRESH_CACHE (default /var/cache/vantor-fresh) so later runs skip debootstrap; the
# working root is a temporary folder removed at the end; the logs of both commands and CTest's
# own log are kept in $VANTOR_FRESH_LOGS (default /var/tmp/vantor-fresh-logs). The checkout's
# tracked and untracked, not ignored, files are copied in as they are in the working tree.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
which=${1:-both}
case "$which" in both | example | tests | packages) ;;
    *) echo "usage: $0 [both|example|tests|packages]" >&2; exit 2 ;;
esac
[ "$(id -u)" -eq 0 ] || { echo "check-fresh: run as root" >&2; exit 1; }

cache=${VANTOR_FRESH_CACHE:-/var/cache/vantor-fresh}
tarball=$cache/bookworm-minbase.tar.gz
# The mirror the machine's own apt sources name.
mirror=$(grep -hE '^(URIs:|deb )' /etc/apt/sources.list /etc/apt/sources.list.d/*.sources 2>/dev/null |
         grep -m1 -oE 'https?://[^ ]+/debian/?' || true)
mirror=${mirror:-http://deb.debian.org/debian}

if ! command -v debootstrap > /dev/null; then
    apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq debootstrap > /dev/null
fi

root=$(mktemp -d /var/tmp/vantor-fresh.XXXXXX)
mounts=()
cleanup() {
    local i
    for ((i = ${#mounts[@]} - 1; i >= 0; i--)); do umount -l "${mounts[$i]}" 2> /dev/null || true; done
    rm -rf --one-file-system "$root"
}
trap cleanup EXIT

start=$(date +%s)
if [ -f "$tarball" ]; then
    tar -C "$root" -xzf "$tarball"
else
    echo "check-fresh: debootstrap bookworm from $mirror"
    debootstrap --variant=minbase --include=ca-certificates,git,sudo bookworm "$root" "$mirror" \
        > "$root.debootstrap.log" 2>&1 || { tail -20 "$root.debootstrap.log"; exit 1; }
    rm -f "$root.debootstrap.log"
    mkdir -p "$cache"
    tar -C "$root" -czf "$tarball.tmp" . && mv "$tarball.tmp" "$tarball"
fi
# The folder becomes "/" of the new root (and the tarball keeps mktemp's mode 700 for it):
# every user, the database servers' own among them, must be able to enter it.
chmod 755 "$root"
echo "check-fresh: minimal root ready in $(($(date +%s) - start)) s"

# The same package sources as this machine (including security updates), and no daemon starts
# from a package install inside the chroot: it would outlive the check and hold its mounts.
cp /etc/apt/sources.list.d/*.sources "$root/etc/apt/sources.list.d/" 2> /dev/null || true
[ -f /etc/apt/sources.list ] && cp /etc/apt/sources.list "$root/etc/apt/sources.list"
printf '#!/bin/sh\nexit 101\n' > "$root/usr/sbin/policy-rc.d" && chmod 755 "$root/usr/sbin/policy-rc.d"
cp /etc/resolv.conf "$root/etc/resolv.conf" 2> /dev/null || true

for m in proc sys dev dev/pts dev/shm; do
    mkdir -p "$root/$m"
    case $m in
        proc) mount -t proc proc "$root/proc" ;;
        sys) mount -t sysfs sys "$root/sys" ;;
        dev/shm) mount -t tmpfs shm "$root/dev/shm" ;;
        *) mount --bind "/$m" "$root/$m" ;;
    esac
    mounts+=("$root/$m")
done

mkdir -p "$root/home/porter/vantor"
(cd "$top" && git ls-files -z -co --exclude-standard | tar --null -T - -cf -) |
    tar -C "$root/home/porter/vantor" -xf -

run() { # name command...
    local name=$1 t0 rc=0
    shift
    t0=$(date +%s)
    chroot "$root" /usr/bin/env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        HOME=/root LANG=C.UTF-8 /bin/bash -c "cd /home/porter/vantor && $*" > "$root/$name.log" 2>&1 || rc=$?
    echo "check-fresh: $name: exit $rc after $(($(date +%s) - t0)) s; last lines:"
    tail -n 12 "$root/$name.log" | sed 's/^/    /'
    return $rc
}

logs=${VANTOR_FRESH_LOGS:-/var/tmp/vantor-fresh-logs}
rm -rf "$logs" && mkdir -p "$logs"
status=0
case $which in both | example) run quickstart-example "bash scripts/run-example.sh" || status=1 ;; esac
case $which in both | tests) run quickstart-tests "bash scripts/run-tests.sh" || status=1 ;; esac
case $which in both | packages) run packages "bash scripts/check-debs.sh" || status=1 ;; esac
case $which in both | packages) run packages-qt6 "bash scripts/check-debs.sh 6" || status=1 ;; esac
cp "$root"/*.log "$logs/" 2> /dev/null || true
cp "$root/home/porter/vantor/build/Testing/Temporary/LastTest.log" "$logs/ctest-LastTest.log" 2> /dev/null || true
echo "check-fresh: logs in $logs"
echo "check-fresh: $([ $status -eq 0 ] && echo PASS || echo FAIL) in $(($(date +%s) - start)) s"
exit $status
