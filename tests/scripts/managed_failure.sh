#!/usr/bin/env bash
# A driver or service that cannot be started, stopped or registered is a failure that tells what sc said.
#
#   managed_failure.sh SCRIPTS     the folder of managed.sh
set -euo pipefail

# shellcheck source=../../scripts/managed.sh
. "$1/managed.sh" ''
failures=0
managed_name=sample
managed_word=sample
built=$0
installed=$0
create_arguments=(binPath= sample)

# In Wine's place, a service manager in the state $sc_state that refuses whatever it is told.
run_wine() {
    shift
    case $2 in
    query) [ "$sc_state" = '' ] || printf '        STATE              : 1  %s\r\n' "$sc_state" ;;
    *)
        printf '[SC] %s FAILED 5:\r\nAccess denied.\r\n' "$2" >&2
        return 5
        ;;
    esac
}
sleep() { :; }

# expect STATE COMMAND VERB: COMMAND fails in STATE and tells of VERB.
expect() {
    local output
    sc_state=$1
    if output=$("$2" 2>&1); then
        printf 'FAILED: %s passes\n' "$2" >&2
        failures=$((failures + 1))
    elif [[ $output != *"sc $3 ended with 5: [SC] $3 FAILED 5: Access denied."* ]]; then
        printf 'FAILED: %s says only: %s\n' "$2" "$output" >&2
        failures=$((failures + 1))
    fi
}

expect STOPPED start start
expect RUNNING stop stop
expect '' install create
expect STOPPED remove delete
[ "$failures" = 0 ] || exit 1
echo "passed"
