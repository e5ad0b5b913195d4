#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A throwaway PostgreSQL server for the database tests and the benchmark.
#   pg-server.sh start DIR PORT   initialises DIR/data on first use, starts the server on
#                                 127.0.0.1:PORT (socket folder DIR/run) and prints "pid=<PID>"
#   pg-server.sh stop DIR         fast shutdown, waits until the server has gone
# Roles: postgres (superuser, password "postgres") and vantor (password "vantor"), who owns the
# database "vantor" and so lands in it when no database name is given. PostgreSQL refuses to
# run as root: as root, the server runs as the user postgres, so DIR's parent folders must be
# open to it.
set -euo pipefail
cmd=$1 dir=$2
bin=/usr/lib/postgresql/15/bin
data=$dir/data
run=$dir/run

as_pg() {
    if [ "$(id -u)" = 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}

case $cmd in
start)
    port=$3
    if [ ! -f "$data/PG_VERSION" ]; then
        mkdir -p "$data" "$run"
        chmod 755 "$dir"
        echo postgres > "$dir/pwfile"
        if [ "$(id -u)" = 0 ]; then chown postgres "$data" "$run" "$dir/pwfile"; fi
        as_pg "$bin/initdb" -D "$data" -U postgres -E UTF8 --locale=C.UTF-8 --auth-local=trust \
            --auth-host=scram-sha-256 --pwfile="$dir/pwfile" > "$dir/initdb.log" 2>&1 ||
            { cat "$dir/initdb.log" >&2; exit 1; }
        fresh=1
    fi
    as_pg "$bin/pg_ctl" -D "$data" -l "$run/server.log" -w -t 60 \
        -o "-c listen_addresses=127.0.0.1 -p $port -k $run -c fsync=off" start > /dev/null ||
        { cat "$run/server.log" >&2; exit 1; }
    if [ "${fresh:-0}" = 1 ]; then
        as_pg psql -X -q -h "$run" -p "$port" -U postgres -d postgres \
            -c "CREATE ROLE vantor LOGIN PASSWORD 'vantor'" \
            -c "CREATE DATABASE vantor OWNER vantor" > /dev/null
    fi
    echo "pid=$(head -n 1 "$data/postmaster.pid")"
    ;;
stop)
    if [ -f "$data/postmaster.pid" ]; then
        as_pg "$bin/pg_ctl" -D "$data" -m fast -w -t 60 stop > /dev/null || true
    fi
    ;;
*)
    echo "usage: $0 start DIR PORT | stop DIR" >&2
    exit 2
    ;;
esac
