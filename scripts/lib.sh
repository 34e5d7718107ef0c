# Shared by every script of this project; to be sourced. Sets ORV_ROOT and the functions below.
# shellcheck shell=bash
set -euo pipefail
ORV_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# The build that every script works on. It has no other way to be named.
export ORV_PRESET=${ORV_PRESET:-x64-release}

say() { printf '%s\n' "$*"; }
step() { printf '== %s\n' "$*"; }
die() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Ends a script whose command line cannot be understood.
misused() {
    printf '%s: %s; see --help\n' "$(basename "$0")" "$*" >&2
    exit 2
}

# For a script that takes no words.
expect_end() { [ $# -eq 0 ] || misused "unexpected '$1'"; }

# Prints the comment block at the head of the calling script and ends it.
show_help() {
    sed -n '2,/^[^#]/{s/^# \{0,1\}//p}' "$0"
    exit 0
}

# The words of the calling script are looked at here once for all: --help may stand anywhere before a "--".
answer_help() {
    local word
    for word in "$@"; do
        case $word in
        --) return ;;
        -h | --help) show_help ;;
        esac
    done
}

expect_preset() {
    local known
    known=$(sed -n '/"configurePresets"/,/"buildPresets"/s/.*"name": "\([^"]*\)".*/\1/p' "$ORV_ROOT/CMakePresets.json" |
        grep -vx base | xargs)
    [[ " $known " == *" $ORV_PRESET "* ]] ||
        misused "ORV_PRESET names no preset: '$ORV_PRESET' is none of $known"
}

answer_help "$@"
expect_preset

# The version of these sources: MAJOR.MINOR.PATCH.
version_of_tree() {
    awk '/define ORV_VERSION_(MAJOR|MINOR|PATCH) / { text = text point $3; point = "." } END { print text }' \
        "$ORV_ROOT/res/version.h"
}

# The prefix of the preset in use; ORV_PREFIX names another.
prefix_dir() { printf '%s' "${ORV_PREFIX:-$ORV_ROOT/build/$ORV_PRESET/prefix}"; }

# Gives what is started from here a home inside the prefix: Wine leaves menus, file types and links in the home
# that it finds, X programs their caches.
leave_home() {
    HOME=$(prefix_dir)/home
    export HOME
    unset XDG_CACHE_HOME XDG_CONFIG_HOME XDG_DATA_HOME XDG_STATE_HOME
}

# Exports what every Wine process of the project runs with. Debian's wrapper prints a notice about 32-bit
# programs at each start, so the loader itself is used where it is known.
wine_environment() {
    local loader
    for loader in /usr/lib/wine/wine64 wine64 wine; do
        if command -v "$loader" >/dev/null 2>&1; then
            WINE=$loader
            break
        fi
    done
    [ -n "${WINE:-}" ] || die "Wine is missing; run scripts/bootstrap.sh"
    WINEPREFIX=$(prefix_dir)
    export WINE WINEPREFIX
    export WINEDEBUG=${WINEDEBUG:--all}
    export WINEDLLOVERRIDES="winedbg.exe=d;winemenubuilder.exe=d;mscoree=d;mshtml=d"
    if [ "$ORV_PRESET" = x86-release ]; then
        [ -d "$ORV_ROOT/build/wine32" ] || die "Wine's 32-bit libraries are missing; run scripts/wine32.sh"
        export WINEDLLPATH="$ORV_ROOT/build/wine32"
    fi
    local display_file="$WINEPREFIX.display"
    if [ -f "$display_file" ]; then
        DISPLAY=$(cut -d' ' -f1 "$display_file")
        export DISPLAY
        if grep -q ' none$' "$display_file"; then
            export XAUTHORITY=${XAUTHORITY:-$HOME/.Xauthority}
        else
            unset XAUTHORITY WAYLAND_DISPLAY
        fi
    fi
    leave_home
}

# run_wine SECONDS PROGRAM [ARG...]: one Wine process under a time limit. The first program with a window starts
# Wine's desktop, which keeps that program's standard error open for as long as any window is there: whoever reads it
# would wait for strangers. So it goes by a file that has no name, and comes after the program's end.
run_wine() {
    local limit_s=$1 errors status=0
    shift
    errors=$(mktemp)
    # shellcheck disable=SC2094 # It is read when it has been written.
    {
        rm "$errors"
        timeout --kill-after=10 "$limit_s" "$WINE" "$@" 2>&7 7>&- 8<&- || status=$?
        cat <&8 >&2
    } 7>"$errors" 8<"$errors"
    return "$status"
}
