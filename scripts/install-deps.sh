#!/usr/bin/env bash
# Installs everything Quarry needs to build, run and test on Debian 12.
set -euo pipefail

SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"

packages=(
    build-essential cmake ninja-build pkg-config
    qt6-base-dev qt6-base-dev-tools
    qt6-charts-dev libqt6opengl6-dev qt6-translations-l10n
    libqt6sql6-sqlite libqt6sql6-mysql libqt6sql6-odbc
    sqlite3 libsqlite3-dev libxlsxwriter-dev zlib1g-dev unzip
    mariadb-server mariadb-client
    unixodbc unixodbc-dev odbc-mariadb
    clang libclang-rt-14-dev
    doxygen clang-format file lintian man-db
    fonts-noto-cjk xvfb xauth
    dbus-daemon python3-gi gir1.2-glib-2.0 libxcb1-dev
)

$SUDO apt-get update
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y --no-install-recommends "${packages[@]}"
