#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A throwaway MariaDB server for the database tests.
#   mariadb-server.sh start DIR PORT   initialises DIR/data on first use, starts the server on
#                                      127.0.0.1:PORT (socket DIR/run/mysql.sock) and prints
#                                      "pid=<PID>"
#   mariadb-server.sh stop DIR         SIGTERM to the server's PID, waits until it has gone
# Accounts reachable over TCP: root@127.0.0.1 (password "rootpw", every privilege) and
# vantor@127.0.0.1 (password "vantor", all rights on the database vantor_db).
set -euo pipefail
cmd=$1 dir=$2
data=$dir/data
run=$dir/run
pidfile=$run/mysqld.pid
sock=$run/mysql.sock

case $cmd in
start)
    port=$3
    if [ ! -d "$data/mysql" ]; then
        mkdir -p "$data" "$run"
        chmod 755 "$dir"
        if [ "$(id -u)" = 0 ]; then chown mysql "$data" "$run"; fi
        mariadb-install-db --no-defaults --user=mysql --datadir="$data" \
            --auth-root-authentication-method=socket --skip-test-db --skip-name-resolve \
            > "$dir/install.log" 2>&1 || { cat "$dir/install.log" >&2; exit 1; }
        fresh=1
    fi
    rm -f "$pidfile"
    setsid mariadbd --no-defaults --user=mysql --datadir="$data" --socket="$sock" \
        --pid-file="$pidfile" --port="$port" --bind-address=127.0.0.1 --skip-name-resolve \
        --innodb-buffer-pool-size=32M --log-error="$run/server.log" > /dev/null 2>&1 < /dev/null &
    for _ in $(seq 1 300); do
        if [ -s "$pidfile" ] && mariadb-admin --no-defaults --socket="$sock" -uroot ping \
            > /dev/null 2>&1; then
            break
        fi
        sleep 0.1
    done
    mariadb-admin --no-defaults --socket="$sock" -uroot ping > /dev/null ||
        { cat "$run/server.log" >&2; exit 1; }
    if [ "${fresh:-0}" = 1 ]; then
        mariadb --no-defaults --socket="$sock" -uroot -e "
            CREATE USER 'root'@'127.0.0.1' IDENTIFIED BY 'rootpw';
            GRANT ALL PRIVILEGES ON *.* TO 'root'@'127.0.0.1' WITH GRANT OPTION;
            CREATE DATABASE vantor_db;
            CREATE USER 'vantor'@'127.0.0.1' IDENTIFIED BY 'vantor';
            GRANT ALL PRIVILEGES ON vantor_db.* TO 'vantor'@'127.0.0.1';"
    fi
    echo "pid=$(cat "$pidfile")"
    ;;
stop)
    if [ -s "$pidfile" ]; then
        pid=$(cat "$pidfile")
        kill -TERM "$pid" 2> /dev/null || true
        for _ in $(seq 1 300); do
            kill -0 "$pid" 2> /dev/null || break
            sleep 0.1
        done
    fi
    ;;
*)
    echo "usage: $0 start DIR PORT | stop DIR" >&2
    exit 2
    ;;
esac
