#!/usr/bin/env bash
# A throw-away MariaDB server for the database tests, listening on 127.0.0.1
# only, with the system's login (BISOL/KORMANTE, all privileges).
#   scripts/mariadb-test-server.sh start DIR   data, pid file and log in DIR, the
#                                              TCP port in DIR/port, the path of
#                                              the Unix socket in DIR/socket
#   scripts/mariadb-test-server.sh stop DIR    shuts it down, removes the data
# QUARRY_MARIADB_BUFFER_POOL sets InnoDB's buffer pool (default 32M, enough
# for the tests' small tables).
# Without a MariaDB server installed, start warns and leaves no DIR/port, so
# the tests skip; with CI=true it fails instead.
set -euo pipefail

usage() {
    echo "usage: $0 start|stop DIR" >&2
    exit 2
}

[ $# -eq 2 ] || usage
action=$1
mkdir -p "$2"
dir=$(cd "$2" && pwd)

data=$dir/data
pidfile=$dir/mysqld.pid
portfile=$dir/port
log=$dir/mysqld.log

# A Unix socket's path holds at most 107 bytes, and DIR may lie deep in a
# checkout: the socket goes to a short folder of its own, named after DIR.
sockdir=/tmp/quarry-mariadb-$(printf %s "$dir" | cksum | cut -d' ' -f1)
sock=$sockdir/mysqld.sock

find_server() {
    PATH=$PATH:/usr/sbin:/usr/local/sbin command -v mariadbd || true
}

admin() {
    mariadb-admin --no-defaults --protocol=socket --socket="$sock" --user=root "$@"
}

client() {
    mariadb --no-defaults --protocol=socket --socket="$sock" --user=root "$@"
}

# The pid of the server started on this DIR, when it still runs: the pid file
# may be left from before a reboot and name some other process by now.
running_pid() {
    [ -f "$pidfile" ] || return 0
    local pid
    pid=$(cat "$pidfile")
    if [ -n "$pid" ] && tr '\0' ' ' 2>/dev/null <"/proc/$pid/cmdline" | grep -qF -- "--datadir=$data"; then
        echo "$pid"
    fi
}

stop_server() {
    local pid
    pid=$(running_pid)
    if [ -n "$pid" ]; then
        admin shutdown 2>/dev/null || kill "$pid" 2>/dev/null || true
        for _ in $(seq 1 100); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        kill -KILL "$pid" 2>/dev/null || true
    fi
    rm -rf "$data" "$portfile" "$portfile.tmp" "$pidfile" "$dir/socket" "$sockdir"
}

port_in_use() {
    (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null
}

free_port() {
    local port
    while :; do
        port=$((20000 + RANDOM % 40000))
        port_in_use "$port" || break
    done
    echo "$port"
}

# Starts the server on the port; fails when it dies or does not answer
# within a minute.
launch() {
    local port=$1 pid
    : >"$log"
    setsid "$server" --no-defaults --datadir="$data" --socket="$sock" --pid-file="$pidfile" \
        --port="$port" --bind-address=127.0.0.1 --user="$(id -un)" --log-error="$log" \
        --lower-case-table-names=1 --character-set-server=utf8mb4 \
        --collation-server=utf8mb4_general_ci --skip-name-resolve --skip-log-bin \
        --innodb-buffer-pool-size="${QUARRY_MARIADB_BUFFER_POOL:-32M}" --innodb-log-file-size=8M \
        --innodb-flush-method=nosync --innodb-flush-log-at-trx-commit=0 --innodb-doublewrite=0 \
        --innodb-file-per-table=0 \
        </dev/null >>"$log" 2>&1 &
    pid=$!
    for _ in $(seq 1 600); do
        if admin ping >/dev/null 2>&1; then
            return 0
        fi
        kill -0 "$pid" 2>/dev/null || return 1
        sleep 0.1
    done
    kill -KILL "$pid" 2>/dev/null || true
    return 1
}

start_server() {
    server=$(find_server)
    if [ -z "$server" ]; then
        if [ "${CI:-}" = true ]; then
            echo "$0: no MariaDB server (mariadbd) installed" >&2
            exit 1
        fi
        echo "$0: no MariaDB server (mariadbd) installed; the MariaDB tests will be skipped" >&2
        exit 0
    fi

    stop_server
    mkdir -p "$data"
    mkdir -m 700 "$sockdir"
    echo "$sock" >"$dir/socket"
    if ! mariadb-install-db --no-defaults --auth-root-authentication-method=normal \
        --datadir="$data" --user="$(id -un)" --skip-test-db --lower-case-table-names=1 \
        >"$dir/install.log" 2>&1; then
        cat "$dir/install.log" >&2
        exit 1
    fi

    local port attempt
    for attempt in 1 2 3 4 5; do
        port=$(free_port)
        if launch "$port"; then
            client <<'SQL'
DELETE FROM mysql.global_priv WHERE User = '';
FLUSH PRIVILEGES;
CREATE USER 'BISOL'@'%' IDENTIFIED BY 'KORMANTE';
GRANT ALL PRIVILEGES ON *.* TO 'BISOL'@'%' WITH GRANT OPTION;
SQL
            echo "$port" >"$portfile.tmp"
            mv "$portfile.tmp" "$portfile"
            echo "MariaDB test server on 127.0.0.1:$port (DIR $dir)"
            return 0
        fi
        # Another program may have taken the port in the meantime.
        grep -q "Address already in use" "$log" || break
        echo "port $port taken (attempt $attempt), trying another" >&2
    done
    echo "$0: the MariaDB test server did not start; its log:" >&2
    cat "$log" >&2
    stop_server
    exit 1
}

case $action in
    start) start_server ;;
    stop) stop_server ;;
    *) usage ;;
esac
