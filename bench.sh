#!/usr/bin/env bash
# Measures every path beside its floor, the least that the system makes of it, in the same run.
#
#   ./bench.sh            one run; a table, and JSON and pictures in build/bench
#   ./bench.sh --check    three runs; fails when some path misses its aim in all three
#
# Figures of a busy machine are worth little: close other work first. docs/performance.md says what each is made of.
. "$(dirname "$0")/scripts/lib.sh"

runs=1
case "${1:-}" in
--check) runs=3 && shift ;;
esac
expect_end "$@"

measure() { # TAGS
    "$ORV_ROOT/scripts/wine-run.sh" --timeout 300 --display -- "$bin/orv_bench.exe" "$1"
}

"$ORV_ROOT/scripts/bootstrap.sh" --bench
"$ORV_ROOT/scripts/build.sh"
cmake --build "$ORV_ROOT/build/$ORV_PRESET" --target orv_bench >"$ORV_ROOT/build/$ORV_PRESET/bench.log" 2>&1 ||
    die "building the benchmarks failed; the output is in build/$ORV_PRESET/bench.log"
bin="$ORV_ROOT/build/$ORV_PRESET/bin"
out="$ORV_ROOT/build/bench"
mkdir -p "$out"
trap '"$ORV_ROOT/scripts/prefix.sh" down' EXIT
"$ORV_ROOT/scripts/install.sh" driver

files=()
for ((run = 1; run <= runs; ++run)); do
    step "Measuring, $run of $runs; the load of the machine: $(cut -d' ' -f1-3 /proc/loadavg)"
    file="$out/run$run.txt"
    "$ORV_ROOT/scripts/driver.sh" start
    measure '[served],[alone]' >"$file"
    for candidate in ours 'ours alone' 'the empty file'; do
        measure "memory of $candidate" >>"$file"
    done
    "$ORV_ROOT/scripts/driver.sh" stop
    measure '[absent]' >>"$file"
    files+=("$file")
done
python3 "$ORV_ROOT/scripts/bench_report.py" "$out" "${files[@]}"
