# SPDX-License-Identifier: MIT
# Sourced by ./run and ./test: installs what is missing on a Debian 12 machine and says what. All messages go to
# standard error, because ./run's standard output belongs to the program.

say() { printf '%s\n' "$*" >&2; }

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        say "This needs root rights and there is no sudo: $*"
        return 1
    fi
}

installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'ok installed'; }

# need_packages NAME…: installs those of the Debian packages that are not there.
need_packages() {
    local missing=() package
    for package in "$@"; do installed "$package" || missing+=("$package"); done
    [ ${#missing[@]} = 0 ] && return 0
    say "Installing Debian packages: ${missing[*]}"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >&2 && return 0
    say "Refreshing the package lists and trying again"
    as_root apt-get update >&2
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >&2
}

# need_commands PACKAGE COMMAND…: installs the package when one of the commands is not there; a newer one that came
# another way serves as well.
need_commands() {
    local package=$1 command
    shift
    for command in "$@"; do
        command -v "$command" >/dev/null || { need_packages "$package"; return; }
    done
}

prepare_build() {
    need_packages g++ libboost1.81-dev libboost-json1.81-dev libcli11-dev libgmime-3.0-dev \
        libglib2.0-dev libical-dev libsdbus-c++-dev
    need_commands cmake cmake
    need_commands pkgconf pkg-config
    need_commands ninja-build ninja
    need_commands nodejs node
    need_commands npm npm
}

prepare_tests() {
    prepare_build
    need_packages libgtest-dev libgmock-dev libbenchmark-dev clang-19 clang-tidy-19 clang-format-19 \
        libclang-rt-19-dev dbus python3-dbusmock chromium fonts-noto-core fonts-noto-cjk fonts-noto-color-emoji
    need_commands python3 python3
    need_commands git git
}
