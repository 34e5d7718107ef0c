#!/usr/bin/env bash
# Whoever reads a windowed program's output is done when that program is, though another one's window stays. What
# the program wrote to its standard error arrives all the same.
#
#   output_ends.sh SCRIPTS PROGRAM.EXE     in a prefix without any window; PROGRAM.EXE looks for a window
set -euo pipefail

scripts=$1
program=$2
# shellcheck source=../../scripts/lib.sh
. "$scripts/lib.sh"
wine_environment

# The desktop ends a second after its last window did: it shall be the program's own.
sleep 3
(
    sleep 1
    # It stays until its time is over, which is a failure to timeout; below it is looked whether it was there.
    timeout 25 "$WINE" notepad >/dev/null 2>&1 </dev/null || true
) &
other=$!
trap 'pkill -P "$other" || true' EXIT

start_s=$SECONDS
said=$("$scripts/wine-run.sh" -- "$program" --title 'No window has this title' --timeout 4 2>&1) && die "it found a window"
took_s=$((SECONDS - start_s))
[[ $said == *'No window has this title'* ]] || die "its standard error did not arrive: '$said'"
kill -0 "$other" 2>/dev/null || die "the other window was gone, so nothing was shown"
[ "$took_s" -lt 12 ] || die "the output was held open for $took_s s by a program that lasts 4"
echo "passed"
