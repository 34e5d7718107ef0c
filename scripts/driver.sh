#!/usr/bin/env bash
# The development driver orvdrv.sys in a build's Wine prefix.
#
#   scripts/driver.sh install   copies it into the prefix and registers it; an older copy is replaced
#   scripts/driver.sh start     starts it, installing it first when it is not there or not the built one
#   scripts/driver.sh stop      stops it; clients that have it open see it gone
#   scripts/driver.sh remove    stops and unregisters it and deletes the copy
#   scripts/driver.sh status    prints "running", "stopped" or "absent"
#
# Each command is content when there is nothing to do. ORV_PRESET names the build (x64-release).
. "$(dirname "$0")/lib.sh"

limit_s=30
built="$ORV_ROOT/build/$ORV_PRESET/bin/orvdrv.sys"
installed="$(prefix_dir)/drive_c/windows/system32/drivers/orvdrv.sys"

# sc's words for the state, or nothing when the driver is not registered.
query() {
    { run_wine "$limit_s" sc query orvdrv 2>/dev/null || true; } | tr -d '\r' |
        sed -n 's/^ *STATE *: *[0-9]* *\([A-Z_]*\).*/\1/p'
}

status() {
    case "$(query)" in
    '') say absent ;;
    RUNNING) say running ;;
    *) say stopped ;;
    esac
}

wait_for() {
    local waited=0
    until [ "$(status)" = "$1" ]; do
        sleep 0.2
        waited=$((waited + 1))
        [ "$waited" -lt 50 ] || die "the driver is '$(status)' and should be '$1'"
    done
}

is_current() { [ -f "$installed" ] && cmp -s "$built" "$installed"; }

stop() {
    [ "$(status)" = running ] || return 0
    run_wine "$limit_s" sc stop orvdrv >/dev/null 2>&1 || true
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
    # The path inside the prefix has no spaces, wherever the project lies.
    run_wine "$limit_s" sc create orvdrv type= kernel start= demand \
        binPath= 'C:\windows\system32\drivers\orvdrv.sys' >/dev/null 2>&1 ||
        die "the driver could not be registered"
}

start() {
    if is_current && [ "$(status)" = running ]; then
        return
    fi
    install
    [ "$(status)" = running ] && return
    run_wine "$limit_s" sc start orvdrv >/dev/null 2>&1 || true
    wait_for running
}

remove() {
    stop
    [ "$(status)" = absent ] || run_wine "$limit_s" sc delete orvdrv >/dev/null 2>&1 ||
        die "the driver could not be unregistered"
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
# Test programs start it side by side.
exec 8>"$(prefix_dir).driver.lock"
flock -w 120 8 || die "another run has been working on the driver for two minutes"
"$command" 8>&-
