# SPDX-License-Identifier: MIT
# Sourced by ./run, ./test, ./gallery and ./measure: installs what is missing on a Debian 12 machine and says what. All
# messages go to standard error, because ./run's standard output belongs to the program.
. packaging/progress.sh
. packaging/tools.sh

# may_install: whether packages can be installed. Asks for sudo's password, if it wants one, before anything else is
# shown on the terminal.
may_install() {
    [ "$(id -u)" != 0 ] || return 0
    if ! command -v sudo >/dev/null; then
        say "Installing needs root rights, and there is no sudo. As root: apt-get install $*"
        return 1
    fi
    sudo -n true 2>/dev/null || sudo -v || {
        say "sudo refuses. As root: apt-get install $*"
        return 1
    }
}

as_root() {
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

apt_get() { as_root env DEBIAN_FRONTEND=noninteractive apt-get -o APT::Status-Fd=1 "$@"; }

# apt_install PACKAGE…: with the package lists as they are, or else, since old lists name what is no longer there, with
# new ones.
apt_install() {
    local install=(install -y --no-install-recommends "$@")
    apt_get "${install[@]}" && return
    echo "Refreshing the package lists and trying again"
    apt_get update && apt_get "${install[@]}"
}

installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'ok installed'; }

# need_packages NAME…: installs those of the Debian packages that are not there.
need_packages() {
    local missing=() package
    for package in "$@"; do installed "$package" || missing+=("$package"); done
    [ ${#missing[@]} != 0 ] || return 0
    say "Installing Debian packages: ${missing[*]}"
    may_install "${missing[@]}" || return
    with_progress "Installing packages" install.log apt_install "${missing[@]}"
}

# apt_install_newest PACKAGE…: with new package lists; those that an installation begins with may name what is long
# replaced, a browser above all.
apt_install_newest() {
    apt_get update && apt_get install -y --no-install-recommends "$@"
}

# want_package WITHOUT NAME: installs the Debian package if it is not there, where that can be; else says what goes on
# without it.
want_package() {
    local without=$1 package=$2
    ! installed "$package" || return 0
    say "Installing Debian packages: $package"
    may_install "$package" && with_progress "Installing packages" install.log apt_install_newest "$package" || say "$without"
}

# packages_of_commands PACKAGE=COMMAND…: the packages of which the command is not there; a newer one that came another
# way serves as well.
packages_of_commands() {
    local entry
    for entry in "$@"; do command -v "${entry#*=}" >/dev/null || echo "${entry%%=*}"; done
}

build_packages=(g++ libboost1.81-dev libboost-json1.81-dev libcli11-dev libgmime-3.0-dev libglib2.0-dev libical-dev
    libsdbus-c++-dev)
build_commands=(cmake=cmake pkgconf=pkg-config ninja-build=ninja nodejs=node npm=npm)
test_packages=(libgtest-dev libgmock-dev clang-19 clang-tidy-19 clang-format-19 libclang-rt-19-dev
    dbus python3-dbusmock doxygen)
page_packages=(chromium-headless-shell fonts-noto-core fonts-noto-cjk fonts-noto-color-emoji)
measure_packages=(libplist-dev dbus)
debian_packages=(dpkg-dev lintian debootstrap desktop-file-utils appstream systemd)
test_commands=(python3=python3 git=git)

# prepare PACKAGE… -- PACKAGE=COMMAND…: refuses tools that are too old, installs what is missing, all at once.
prepare() {
    local packages=() missing
    while [ "$1" != -- ]; do
        packages+=("$1")
        shift
    done
    shift
    check_tools || return
    mapfile -t missing < <(packages_of_commands "$@")
    need_packages "${packages[@]}" "${missing[@]}" || return
    # Once more: what was installed may be older than what is needed, on another system than Debian 12.
    [ ${#missing[@]} = 0 ] || check_tools
}

prepare_build() { prepare "${build_packages[@]}" -- "${build_commands[@]}"; }

prepare_gallery() { prepare "${build_packages[@]}" "${page_packages[@]}" -- "${build_commands[@]}"; }

prepare_measure() { prepare "${build_packages[@]}" "${measure_packages[@]}" -- "${build_commands[@]}" python3=python3; }

prepare_packages() {
    prepare "${build_packages[@]}" "${debian_packages[@]}" -- "${build_commands[@]}" "${test_commands[@]}" || return
    prefer_debians_cmake
}

prepare_tests() {
    prepare "${build_packages[@]}" "${page_packages[@]}" "${test_packages[@]}" -- "${build_commands[@]}" "${test_commands[@]}" || return
    want_package "The page's tests in Firefox are skipped." firefox-esr
    prefer_debians_cmake
}
