#!/usr/bin/env bash
# Runs one Windows program in the project's Wine prefix, under a time limit.
#
#   scripts/wine-run.sh [--timeout SECONDS] [--driver] [--display] -- PROGRAM [ARG...]
#
#   --timeout SECONDS   ends the program after so long (60)
#   --driver            the program uses the device: starts the driver first
#   --display           the program opens windows (all runs have the prefix's virtual display; this says so)
#
# ORV_PRESET names the build (x64-release) whose prefix it runs in, which is brought up when it is not. A program of
# another build is refused.
. "$(dirname "$0")/lib.sh"

limit_s=60
driver=no
while [ $# -gt 0 ]; do
    case $1 in
    --timeout)
        [[ ${2:-} =~ ^[1-9][0-9]*$ ]] || misused "--timeout needs a number of seconds, not '${2:-}'"
        limit_s=$2
        shift 2
        ;;
    --driver) driver=yes && shift ;;
    --display) shift ;;
    --) shift && break ;;
    *) misused "unknown option '$1'" ;;
    esac
done
[ $# -gt 0 ] || misused "name a program"

program=$(realpath -m -- "$1")
case $program in
"$ORV_ROOT/build/$ORV_PRESET"/*) ;;
"$ORV_ROOT"/build/*/bin/*)
    preset=${program#"$ORV_ROOT"/build/}
    misused "$1 is not of $ORV_PRESET; to run it, set ORV_PRESET=${preset%%/*}"
    ;;
esac
"$ORV_ROOT/scripts/prefix.sh" up
if [ "$driver" = yes ]; then
    "$ORV_ROOT/scripts/driver.sh" start
fi
wine_environment
run_wine "$limit_s" "$@"
