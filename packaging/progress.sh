# SPDX-License-Identifier: MIT
# Sourced by the scripts: shows how far something slow is, and keeps all that it says.

# Where the whole output of slow steps goes.
logs_directory=build/logs

say() { printf '%s\n' "$*" >&2; }

# step_text LINE: sets `step` to what a line of output tells of how far its program is; fails for other lines. Ninja
# counts its steps, and apt-get gives percents in a form of its own.
step_text() {
    local kind rest percent
    if [[ $1 =~ ^\[([1-9][0-9]*)/([0-9]+)\]\ (.*) ]]; then
        step="${BASH_REMATCH[1]} of ${BASH_REMATCH[2]}: ${BASH_REMATCH[3]}"
        # What matters of an object's path is its source's.
        [[ ! $step =~ ^(.*)CMakeFiles/[^/]*\.dir/(.*)$ ]] || step=${BASH_REMATCH[1]}${BASH_REMATCH[2]}
    elif [[ $1 == dlstatus:* || $1 == pmstatus:* ]]; then
        kind=${1%%:*}
        rest=${1#*:*:}
        percent=${rest%%:*}
        step="${percent%%.*} %: ${rest#*:}"
        [ "$kind" = pmstatus ] || step="downloading, $step"
    else
        return 1
    fi
}

# show_steps LABEL: reads the output of a program and shows its steps on standard error: on a terminal in one line that
# moves and is gone afterwards, elsewhere in a line now and then, so that a log stays short.
show_steps() {
    local label=$1 line step width shown=$((SECONDS - 15))
    width=$(stty size 2>/dev/null <&2 | cut -d ' ' -f 2)
    [ "${width:-0}" -gt 1 ] || width=80
    while IFS= read -r line; do
        step_text "$line" || continue
        if [ -t 2 ]; then
            step="$label, $step"
            printf '\r\033[K%s' "${step:0:width-1}" >&2
        elif [ $((SECONDS - shown)) -ge 15 ]; then
            shown=$SECONDS
            say "$label, $step"
        fi
    done
    [ ! -t 2 ] || printf '\r\033[K' >&2
}

# with_progress LABEL LOG COMMAND…: runs the command with all its output in the log file, and shows how far it is. When
# it fails, the part of its output that tells why follows, and where the whole is.
with_progress() {
    local label=$1 log=$logs_directory/$2 status
    shift 2
    mkdir -p "$logs_directory" || return
    [ ! -t 2 ] || printf '\r\033[K%s …' "$label" >&2
    "$@" 2>&1 </dev/null | tee "$log" | show_steps "$label"
    status=${PIPESTATUS[0]}
    [ "$status" != 0 ] || return 0
    # A build goes on with what had begun: its first failure says more than its last lines.
    if grep -q '^FAILED:' "$log"; then
        sed -n '/^FAILED:/,$p' "$log" | head -n 60 >&2
    else
        grep -vE '^(dl|pm)status:' "$log" | tail -n 30 >&2
    fi
    say "$label: failed with status $status. The whole output is in $PWD/$log."
    return "$status"
}
