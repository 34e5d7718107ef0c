# What scripts/driver.sh and scripts/service.sh share: a program under Windows' service manager. To be sourced.
#
# The caller sets the variables below and may define before_start and log_hint.
# shellcheck shell=bash
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

managed_name=''         # as sc knows it
managed_word=''         # for people
built=''                # the file in the build folder
installed=''            # and in the prefix
create_arguments=()     # what sc create is told
limit_s=30

before_start() { :; }
log_hint() { :; }

# sc's words for the state, or nothing when it answers none.
query_once() {
    { run_wine "$limit_s" sc query "$managed_name" 2>/dev/null || true; } | tr -d '\r' |
        sed -n 's/^ *STATE *: *[0-9]* *\([A-Z_]*\).*/\1/p'
}

# Nothing when it is not registered. sc gives the same answer when it cannot reach the service manager, which has
# been seen to happen for a moment on a busy machine: so it is believed only when it says so again.
query() {
    local state
    state=$(query_once)
    if [ -z "$state" ]; then
        sleep 0.5
        state=$(query_once)
    fi
    printf '%s' "$state"
}

status() {
    case "$(query)" in
    '') say absent ;;
    RUNNING) say running ;;
    STOPPED) say stopped ;;
    *) say changing ;;
    esac
}

# Runs sc and keeps its words and its result, for whoever has to report a failure.
sc_said=''
ask_sc() {
    local result=0
    sc_said=$(run_wine "$limit_s" sc "$@" 2>&1 | tr -d '\r' | tr '\n' ' ') || result=$?
    sc_said="sc $1 ended with $result: $sc_said"
    return "$result"
}

# What counts is the state that follows, not sc's result: it fails where there is nothing left to do, and for a moment
# where it does not reach the service manager.
wait_for() {
    local waited=0
    until [ "$(status)" = "$1" ]; do
        sleep 0.2
        waited=$((waited + 1))
        if [ "$waited" -ge 50 ]; then
            log_hint >&2
            die "the $managed_word is '$(status)' and should be '$1'; $sc_said"
        fi
    done
}

is_current() { [ -f "$installed" ] && cmp -s "$built" "$installed"; }

stop() {
    [ "$(status)" = running ] || return 0
    # What counts is the state that follows; wait_for fails when it does not come.
    ask_sc stop "$managed_name" || true
    wait_for stopped
}

install() {
    [ -f "$built" ] || die "$built is missing; build it first (scripts/build.sh)"
    if ! is_current; then
        stop
        mkdir -p "$(dirname "$installed")"
        cp "$built" "$installed"
    fi
    [ "$(status)" = absent ] || return 0
    ask_sc create "$managed_name" "${create_arguments[@]}" || die "the $managed_word could not be registered; $sc_said"
}

start() {
    if is_current && [ "$(status)" = running ]; then
        return
    fi
    before_start
    install
    [ "$(status)" = running ] && return
    # As above.
    ask_sc start "$managed_name" || true
    wait_for running
}

remove() {
    stop
    [ "$(status)" = absent ] || ask_sc delete "$managed_name" || die "the $managed_word could not be unregistered; $sc_said"
    rm -f "$installed"
}

# run_command WORD: what the calling script was asked for.
run_command() {
    case "$1" in
    install | start | stop | remove | status) ;;
    *) misused "say install, start, stop, remove or status, not '$1'" ;;
    esac
    "$ORV_ROOT/scripts/prefix.sh" up
    wine_environment
    # Test programs start it side by side.
    exec 8>"$(prefix_dir).$managed_word.lock"
    flock -w 120 8 || die "another run has been working on the $managed_word for two minutes"
    "$1" 8>&-
}
