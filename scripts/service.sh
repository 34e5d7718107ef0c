#!/usr/bin/env bash
# The development service orvsvc.exe in a build's Wine prefix, as a Windows service of its own.
#
#   scripts/service.sh install   copies it into the prefix and registers it; an older copy is replaced
#   scripts/service.sh start     starts it, installing it and starting the driver first where need be
#   scripts/service.sh stop      stops it; what it protects stays remembered
#   scripts/service.sh remove    stops and unregisters it and deletes the copy; its state and copies stay
#   scripts/service.sh status    prints "running", "stopped" or "absent"
#
# Each command is content when there is nothing to do. ORV_PRESET names the build (x64-release). State, copies
# and log are in the prefix, in drive_c/ProgramData/Orvane/devservice.
. "$(dirname "$0")/lib.sh"

limit_s=30
built="$ORV_ROOT/build/$ORV_PRESET/bin/orvsvc.exe"
installed="$(prefix_dir)/drive_c/Program Files/Orvane/orvsvc.exe"

# sc's words for the state, or nothing when the service is not registered.
query() {
    { run_wine "$limit_s" sc query orvsvc 2>/dev/null || true; } | tr -d '\r' |
        sed -n 's/^ *STATE *: *[0-9]* *\([A-Z_]*\).*/\1/p'
}

status() {
    case "$(query)" in
    '') say absent ;;
    RUNNING) say running ;;
    STOPPED) say stopped ;;
    *) say changing ;;
    esac
}

wait_for() {
    local waited=0
    until [ "$(status)" = "$1" ]; do
        sleep 0.2
        waited=$((waited + 1))
        if [ "$waited" -ge 50 ]; then
            say "Its log, $(prefix_dir)/drive_c/ProgramData/Orvane/devservice/orvsvc.log, may say why." >&2
            die "the service is '$(status)' and should be '$1'"
        fi
    done
}

is_current() { [ -f "$installed" ] && cmp -s "$built" "$installed"; }

stop() {
    [ "$(status)" = running ] || return 0
    run_wine "$limit_s" sc stop orvsvc >/dev/null 2>&1 || true
    wait_for stopped
}

install() {
    [ -f "$built" ] || die "$built is missing; build it first (scripts/build.sh $ORV_PRESET)"
    if ! is_current; then
        stop
        mkdir -p "$(dirname "$installed")"
        cp "$built" "$installed"
    fi
    [ "$(status)" = absent ] || return 0
    run_wine "$limit_s" sc create orvsvc start= demand depend= orvdrv \
        binPath= '"C:\Program Files\Orvane\orvsvc.exe" service' >/dev/null 2>&1 ||
        die "the service could not be registered"
}

start() {
    if is_current && [ "$(status)" = running ]; then
        return
    fi
    "$ORV_ROOT/scripts/driver.sh" start
    install
    [ "$(status)" = running ] && return
    run_wine "$limit_s" sc start orvsvc >/dev/null 2>&1 || true
    wait_for running
}

remove() {
    stop
    [ "$(status)" = absent ] || run_wine "$limit_s" sc delete orvsvc >/dev/null 2>&1 ||
        die "the service could not be unregistered"
    rm -f "$installed"
}

command=${1:-}
case "$command" in
-h | --help) show_help ;;
install | start | stop | remove | status) ;;
*) die "say install, start, stop, remove or status; see --help" ;;
esac
"$ORV_ROOT/scripts/prefix.sh" up
wine_environment
"$command"
