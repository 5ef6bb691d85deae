# Shared by the scripts of this folder: messages, packages, builds, and a display of one's own. Sourced, not run.
# shellcheck shell=bash

set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
export root

say() { printf '%s\n' "$*" >&2; }
die() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

on_mac() { [[ $(uname -s) == Darwin ]]; }
cores() { getconf _NPROCESSORS_ONLN; }

# need <group>...: installs the packages of these groups that are missing. Asks no network when none is.
need() {
    local groups=" $* " group debian brew missing=() present
    if on_mac; then
        command -v brew >/dev/null || die "Homebrew is needed: https://brew.sh"
        present=" $(brew list --formula -1 | tr '\n' ' ')"
        while read -r group debian brew; do
            [[ $groups == *" $group "* && $brew != - && $present != *" $brew "* ]] || continue
            [[ " ${missing[*]-} " == *" $brew "* ]] || missing+=("$brew")
        done < <(grep -v '^#' "$root/scripts/lib/packages")
        ((${#missing[@]} == 0)) || brew install --quiet "${missing[@]}"
        return
    fi
    command -v dpkg-query >/dev/null ||
        die "this system has no dpkg; install what scripts/lib/packages lists, then use cmake --preset"
    present=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' | awk '$2 == "installed" {printf " %s ", $1}')
    while read -r group debian brew; do
        [[ $groups == *" $group "* && $debian != - && $present != *" $debian "* ]] || continue
        [[ " ${missing[*]-} " == *" $debian "* ]] || missing+=("$debian")
    done < <(grep -v '^#' "$root/scripts/lib/packages")
    ((${#missing[@]} == 0)) && return
    local as_root=()
    if [[ $(id -u) != 0 ]]; then
        command -v sudo >/dev/null || die "root or sudo is needed to install: ${missing[*]}"
        as_root=(sudo)
    fi
    say "Installing: ${missing[*]}"
    quietly "${as_root[@]}" apt-get -q update
    quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q install -y --no-install-recommends "${missing[@]}"
}

# quietly <command>...: shows the command's output only when it fails.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 || status=$?
    if ((status != 0)); then
        cat "$log" >&2
        say "failed: $*"
    fi
    rm -f "$log"
    return "$status"
}

# build <preset> [target]...: configures once and builds; only failures and a terminal's progress line are shown.
build() {
    local preset=$1
    shift
    local dir=$root/build/$preset
    [[ -f $dir/build.ninja ]] || (cd "$root" && quietly cmake --preset "$preset")
    say "Building ${preset} ..."
    if [[ -t 1 ]]; then
        ninja --quiet -C "$dir" "$@" || die "the $preset build failed"
    else
        quietly ninja -C "$dir" "$@" || die "the $preset build failed"
    fi
}

# start_display: an X server of one's own on a free display, exported as DISPLAY, ended by stop_display.
start_display() {
    local pipe
    pipe=$(mktemp -u)
    mkfifo "$pipe"
    Xvfb -displayfd 3 -screen 0 "${1:-1280x860x24}" -nolisten tcp -noreset 3>"$pipe" >/dev/null 2>&1 &
    display_pid=$!
    read -r -t 20 DISPLAY <"$pipe" || die "Xvfb did not start"
    rm -f "$pipe"
    export DISPLAY=:$DISPLAY
    unset WAYLAND_DISPLAY
    export QT_QPA_PLATFORM=xcb
}

stop_display() {
    [[ -n ${display_pid-} ]] || return 0
    kill "$display_pid" 2>/dev/null || true
    wait "$display_pid" 2>/dev/null || true
    display_pid=
}
