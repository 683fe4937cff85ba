# SPDX-License-Identifier: MIT
# Sourced by the scripts: the tools of which not every version will do.

# Oldest versions with which this project builds: those of Debian 12.
tools=("g++ 12" "cmake 3.25" "node 18")

# version_of TOOL: its version number, or nothing.
version_of() {
    case "$1" in
        *g++) "$1" -dumpfullversion -dumpversion ;;
        *) "$1" --version ;;
    esac 2>/dev/null | grep -oE '[0-9]+(\.[0-9]+)*' | head -n 1
}

# at_least VERSION MINIMUM
at_least() { printf '%s\n%s\n' "$2" "$1" | sort -V -C; }

# check_tools: fails with one line for each tool that is there and will not do. One that is not there is installed later.
check_tools() {
    local entry tool minimum place version status=0
    for entry in "${tools[@]}"; do
        read -r tool minimum <<<"$entry"
        place=$(command -v "$tool") || continue
        version=$(version_of "$place")
        if [ -z "$version" ]; then
            say "$place does not tell its version; $tool $minimum or newer is needed."
            status=1
        elif ! at_least "$version" "$minimum"; then
            say "$place is version $version; $tool $minimum or newer is needed."
            status=1
        fi
    done
    return $status
}

# prefer_debians_cmake: sets `cmake`, `ctest` and `cpack` to Debian 12's own where it can, so that what a newer one lets pass
# shows on the machine of whoever has it.
prefer_debians_cmake() {
    cmake=cmake
    cpack=cpack
    ctest=ctest
    case "$(version_of cmake)" in 3.25*) return ;; esac
    need_packages cmake || return
    case "$(version_of /usr/bin/cmake)" in
        3.25*)
            cmake=/usr/bin/cmake
            cpack=/usr/bin/cpack
            ctest=/usr/bin/ctest
            ;;
        *) say "There is no CMake 3.25 here: the build is tried with $(version_of cmake) only." ;;
    esac
}
