#!/usr/bin/env bash
# Measures how strong the tests are: makes single-fault variants of the product, builds each, runs the quick tests, and
# lists the variants that no test noticed.
#
#   scripts/mutate.sh [--count N] [--seed N] [--jobs N]
#
#   --count N   how many variants (300)
#   --seed N    which ones; the same seed on the same commit draws the same (1)
#   --jobs N    how many at a time, each in a checkout with a Wine prefix of its own (2)
#
# It takes hours. Interrupted, it goes on where it was; what it did is in build/mutate. What is committed is measured.
. "$(dirname "$0")/lib.sh"

count=300
seed=1
jobs=2
while [ $# -gt 0 ]; do
    case $1 in
    --count | --seed | --jobs)
        [[ ${2:-} =~ ^[1-9][0-9]*$ ]] || misused "$1 takes a number from 1, not '${2:-}'"
        declare "${1#--}=$2"
        shift 2
        ;;
    *) misused "unknown option '$1'" ;;
    esac
done

"$ORV_ROOT/scripts/bootstrap.sh" --mutate
work="$ORV_ROOT/build/mutate/$(git -C "$ORV_ROOT" rev-parse --short HEAD)-$seed-$count-$jobs"
mkdir -p "$work"

# one_job NUMBER: a checkout, built once, in which one variant after the other is tried.
one_job() {
    export ORV_PRESET=x64-release
    local checkout="$work/$1"
    [ -d "$checkout" ] || git clone -q "$ORV_ROOT" "$checkout"
    # What the prefix needs; a test program is built when a variant first asks for it.
    (cd "$checkout" && cmake --preset x64-release && ninja -C build/x64-release orvdrv orvcert orvres orvsvc) \
        >"$checkout.build.log" || die "$checkout could not be built; see $checkout.build.log"
    "$checkout/scripts/install.sh" driver >/dev/null
    local result=0
    python3 "$ORV_ROOT/tests/mutation/run_variants.py" "$checkout" "$work/$1.jsonl" "$1" "$jobs" "$count" "$seed" ||
        result=$?
    "$checkout/scripts/prefix.sh" down
    return "$result"
}

step "Trying $count variants, $jobs at a time"
pids=()
for ((number = 0; number < jobs; number++)); do
    one_job "$number" &
    pids+=($!)
done
result=0
for pid in "${pids[@]}"; do
    wait "$pid" || result=1
done
[ "$result" = 0 ] || die "a job ended early; run the command again to go on"
python3 "$ORV_ROOT/tests/mutation/report.py" "$work"/*.jsonl
