#!/usr/bin/env bash
# Installs what Quarry needs to build, run and test on Debian 12: only the
# packages that are missing, so that on a machine that has them all it
# needs neither the network nor root. It prints nothing on standard output:
# apt's output goes to standard error.
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config
    qt6-base-dev qt6-base-dev-tools libxkbcommon-dev
    qt6-charts-dev libqt6opengl6-dev qt6-translations-l10n
    libqt6sql6-sqlite libqt6sql6-mysql libqt6sql6-odbc
    sqlite3 libsqlite3-dev libxlsxwriter-dev zlib1g-dev unzip
    mariadb-server mariadb-client libmariadb-dev
    unixodbc unixodbc-dev odbc-mariadb
    clang libclang-rt-14-dev
    doxygen clang-format file lintian man-db
    fonts-noto-cjk fonts-wqy-zenhei xvfb xauth poppler-utils
    dbus-daemon python3-gi gir1.2-glib-2.0 libxcb1-dev
)

# dpkg-query lists the installed ones, and fails for those it never knew.
installed=" $({ dpkg-query -W -f='${db:Status-Abbrev} ${Package}\n' "${packages[@]}" 2>/dev/null || true; } |
    awk '$1 == "ii" { printf "%s ", $2 }')"
missing=()
for package in "${packages[@]}"; do
    [[ $installed == *" $package "* ]] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"
echo "install-deps.sh: installing ${missing[*]}" >&2
$SUDO apt-get update >&2
$SUDO env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends "${missing[@]}" >&2
