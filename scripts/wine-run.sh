#!/usr/bin/env bash
# Runs one Windows program in the project's Wine prefix, under a time limit.
#
#   scripts/wine-run.sh [--timeout SECONDS] [--driver] [--display] -- PROGRAM [ARG...]
#
#   --timeout SECONDS   ends the program after so long (60)
#   --driver            the program uses the device: starts the driver first
#   --display           the program opens windows (all runs have the prefix's virtual display; this says so)
#
# The prefix belongs to the build that PROGRAM comes from and is brought up when it is not.
. "$(dirname "$0")/lib.sh"

limit_s=60
driver=no
while [ $# -gt 0 ]; do
    case $1 in
    -h | --help) show_help ;;
    --timeout) limit_s=$2 && shift 2 ;;
    --driver) driver=yes && shift ;;
    --display) shift ;;
    --) shift && break ;;
    *) die "unknown option '$1'; see --help" ;;
    esac
done
[ $# -gt 0 ] || die "name a program; see --help"

case $1 in
"$ORV_ROOT"/build/*/bin/*)
    ORV_PRESET=${1#"$ORV_ROOT"/build/}
    export ORV_PRESET=${ORV_PRESET%%/*}
    ;;
esac
"$ORV_ROOT/scripts/prefix.sh" up
if [ "$driver" = yes ]; then
    "$ORV_ROOT/scripts/driver.sh" start
fi
wine_environment
run_wine "$limit_s" "$@"
