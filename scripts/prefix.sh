#!/usr/bin/env bash
# The private Wine prefix of a build: made on first use, kept in build/PRESET/prefix.
#
#   scripts/prefix.sh up       makes the prefix if need be, starts its display and server
#   scripts/prefix.sh down     stops all that runs in it
#   scripts/prefix.sh remove   stops it and deletes it
#
# ORV_PRESET names the preset (x64-release), ORV_PREFIX another folder altogether, ORV_DISPLAY a display of yours to
# use in place of a virtual one. While it is up, one Wine server keeps the prefix's services and drivers running and
# one display shows its windows: a desktop belongs to the display that its first window met, so all runs share one.
. "$(dirname "$0")/lib.sh"

prefix=$(prefix_dir)
display_file="$prefix.display"
lock_file="$prefix.lock"

# When a process was started, in ticks since the machine was: with its number that names one process only. The
# program's name, which comes before, may hold anything.
start_of() { sed 's/.*) //' "/proc/$1/stat" 2>/dev/null | cut -d' ' -f20; }

# The file holds the display's name, process and start; a person's own display has no process that is ours to stop.
# Prints the process if it still is the one that was written down: the system gives numbers out again.
display_process() {
    local name process start
    [ -f "$display_file" ] && read -r name process start <"$display_file" || return 1
    [ -n "$name" ] && [[ $process =~ ^[0-9]+$ ]] && [ -n "$start" ] && [ "$(start_of "$process")" = "$start" ] &&
        printf '%s' "$process"
}

display_is_up() {
    [ -f "$display_file" ] || return 1
    grep -q ' none$' "$display_file" || display_process >/dev/null
}

start_display() {
    display_is_up && return
    rm -f "$display_file"
    if [ -n "${ORV_DISPLAY:-}" ]; then
        printf '%s none\n' "$ORV_DISPLAY" >"$display_file"
        return
    fi
    local number_file
    number_file=$(mktemp)
    # The display outlives this script; it lets go of the lock and of our output.
    HOME="$prefix/home" setsid Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$number_file" 9>&- >/dev/null 2>&1 </dev/null &
    local pid=$! waited=0
    while [ ! -s "$number_file" ]; do
        sleep 0.1
        waited=$((waited + 1))
        if [ "$waited" -gt 100 ] || ! kill -0 "$pid" 2>/dev/null; then
            rm -f "$number_file"
            die "the virtual display did not start"
        fi
    done
    printf ':%s %s %s\n' "$(tr -d '\n' <"$number_file")" "$pid" "$(start_of "$pid")" >"$display_file"
    rm -f "$number_file"
}

# Wine makes a person's folders in the prefix links into the home. The folders for temporary files are the programs' own:
# they make links there that shall stay, and take away what would be looked through.
replace_links() {
    local link
    find "$prefix/drive_c/users" -path '*/Temp' -prune -o -type l -print0 | while IFS= read -r -d '' link; do
        rm "$link"
        mkdir "$link"
    done
}

# On a busy machine Wine has been seen to refuse a start for a moment.
at_last() { "$@" || { sleep 1 && "$@"; } || { sleep 3 && "$@"; }; }

make_prefix() {
    [ -f "$prefix/.made" ] && return
    step "Making a Wine prefix"
    rm -rf "$prefix"
    mkdir -p "$prefix/home"
    run_wine 180 wineboot -i >/dev/null 2>&1 || die "the Wine prefix could not be made"
    at_last run_wine 60 winecfg /v win10 >/dev/null 2>&1 || die "the prefix's Windows version could not be set"
    # No window manager runs on the virtual display. Windows that expect one wait for it, two seconds at each
    # closing, and have no title bar: Wine is told to do without and to draw title bars itself.
    local setting
    for setting in Managed Decorated; do
        at_last run_wine 60 reg add 'HKCU\Software\Wine\X11 Driver' /v "$setting" /d N /f >/dev/null 2>&1 ||
            die "the prefix's windows could not be set up"
    done
    # The signs on title bars and scroll bars are letters of this font, which Debian's Wine does not find by itself.
    cp /usr/share/wine/fonts/marlett.ttf "$prefix/drive_c/windows/Fonts/" || die "the font of Wine's signs is missing"
    # Where a Windows font has no East Asian letters, it is linked to one that has: here to Debian's.
    at_last run_wine 60 reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontLink\SystemLink' /v Tahoma \
        /t REG_MULTI_SZ /d 'NotoSansCJK-Regular.ttc,Noto Sans CJK JP' /f >/dev/null 2>&1 ||
        die "the prefix's fonts could not be set up"
    timeout 60 wineserver -w || true
    : >"$prefix/.made"
}

server_is_up() { timeout 10 wineserver -k0 2>/dev/null; }

# Without a persistent server everything in the prefix would end with the last program. The first program
# starts the prefix's services, which keep its output open for as long as they run: so it is one of ours.
start_server() {
    timeout 30 wineserver -p && run_wine 60 cmd /c exit
}

up() {
    mkdir -p "$(dirname "$prefix")"
    exec 9>"$lock_file"
    flock -w 300 9 || die "another run has been setting up $prefix for five minutes"
    start_display
    wine_environment
    make_prefix
    replace_links
    server_is_up || start_server 9>&- >/dev/null 2>&1 </dev/null || die "the Wine server did not start"
    exec 9>&-
}

down() {
    wine_environment
    timeout 30 wineserver -k 2>/dev/null || true
    local process
    if process=$(display_process); then
        # It may have ended by itself meanwhile.
        kill "$process" 2>/dev/null || true
    fi
    rm -f "$display_file"
}

case "${1:-}" in
up) up ;;
down) down ;;
remove) down && rm -rf "$prefix" "$lock_file" "$prefix".*.lock ;;
*) misused "say up, down or remove, not '${1:-}'" ;;
esac
