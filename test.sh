#!/usr/bin/env bash
# Builds the product and passes all tests, installing what that needs (as root or with sudo).
#
#   ./test.sh                     all tests but those labelled "long" or "soak"
#   ./test.sh OPTION...           what these pick, for example ./test.sh -R driver
#   ./test.sh --soak              endurance: crowds, deep nesting, mutations and cycles, at length (some 7 minutes)
#   ./test.sh --all               all tests, and every other check of this project: what CI runs
#
# The options are ctest's: -R and -E pick tests by name, -L and -LE by label (each with a pattern), --rerun-failed those
# that failed last; --repeat until-fail:N, -V and -N.
#
# ORV_PRESET names the build (x64-release). Everything happens in build/PRESET; a Wine prefix of its own is made there
# and stopped at the end.
. "$(dirname "$0")/scripts/lib.sh"

if [ "${1:-}" = --all ]; then
    shift
    exec "$ORV_ROOT/scripts/check-all.sh" "$@"
fi

limit_s=
if [ "${1:-}" = --soak ]; then
    shift
    expect_end "$@"
    set -- -L '^soak$'
    limit_s=5700
fi

chosen=(-LE '^(long|soak)$')
if [ $# -gt 0 ]; then
    chosen=("$@")
    : "${limit_s:=2400}"
fi
: "${limit_s:=1200}"

# ctest passes over what it does not know, and would run everything.
while [ $# -gt 0 ]; do
    case $1 in
    -R | -E | -L | -LE | --repeat)
        [ $# -gt 1 ] || misused "$1 needs a value"
        shift 2
        ;;
    -V | -N | --rerun-failed) shift ;;
    *) misused "unknown option '$1'" ;;
    esac
done

start_s=$SECONDS
step "Building $ORV_PRESET"
"$ORV_ROOT/scripts/build.sh"
trap '"$ORV_ROOT/scripts/prefix.sh" down' EXIT
step "Setting up the Wine prefix"
"$ORV_ROOT/scripts/install.sh" driver
# Left over from a run that was killed, it would be the one service side that the driver lets in.
"$ORV_ROOT/scripts/service.sh" stop
step "Testing"
cd "$ORV_ROOT/build/$ORV_PRESET"
result=0
timeout --kill-after=30 "$limit_s" ctest -j2 --output-on-failure --no-tests=error "${chosen[@]}" || result=$?
say "Screenshots of the windows are in build/$ORV_PRESET/screenshots. Whole run: $((SECONDS - start_s)) s."
exit "$result"
