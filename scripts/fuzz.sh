#!/usr/bin/env bash
# Feeds the parts that need no Windows, or no more of it than tests/fuzz/native/windows stands in for, to clang's
# libFuzzer, built for this machine with the address and undefined-behaviour sanitizers: the date patterns against the
# standard library's, the bounded JSON parser, the readers of replies, and that of documents against the parser's tree.
#
#   scripts/fuzz.sh [SECONDS]     so long for each (60)
#
# What it finds is kept in build/fuzz, and tried first the next time.
. "$(dirname "$0")/lib.sh"

seconds=60
if [ $# -gt 0 ]; then
    [[ $1 =~ ^[1-9][0-9]*$ ]] || misused "a number of seconds is wanted, not '$1'"
    seconds=$1
    shift
fi
expect_end "$@"

"$ORV_ROOT/scripts/bootstrap.sh" --fuzz
out="$ORV_ROOT/build/fuzz"
native="$ORV_ROOT/tests/fuzz/native"
flags=(-std=c++20 -O1 -g -I"$ORV_ROOT" -I"$native/windows" "-fsanitize=fuzzer,address,undefined"
    -fno-sanitize-recover=all -D_GLIBCXX_ASSERTIONS)

fuzz() { # NAME LONGEST SOURCE...
    local name=$1 longest=$2
    shift 2
    step "$name, $seconds s"
    mkdir -p "$out/$name"
    (cd "$ORV_ROOT" && clang++ "${flags[@]}" "$native/$name.cpp" "$@" -o "$out/$name.bin")
    # Its own finds, then good samples to begin with.
    local samples=("$out/$name")
    [ ! -d "$native/seeds/$name" ] || samples+=("$native/seeds/$name")
    timeout $((seconds + 60)) "$out/$name.bin" -max_total_time="$seconds" -max_len="$longest" -seed=1 -print_final_stats=1 \
        -artifact_prefix="$out/" -dict="$native/$name.dict" "${samples[@]}" >"$out/$name.log" 2>&1 ||
        { tail -n 30 "$out/$name.log" >&2 && die "$name found something; what it was fed is in build/fuzz"; }
    grep -E 'number_of_executed_units|^#.*DONE' "$out/$name.log"
}

fuzz patterns_fuzz 64 ovufc/time/regular_expression.cpp ovufc/time/text_patterns.cpp
json=(ovufc/json_bounded.cpp ovufc/owned_json.cpp)
fuzz json_fuzz 4096 "${json[@]}"
texts=(ovufc/json_members.cpp service/text.cpp "$native/windows/utf8.cpp")
fuzz replies_fuzz 4096 service/reply.cpp service/reply_readers.cpp "${json[@]}" "${texts[@]}"
locations=(namespace/locations/{location_document,location_reader,user_folders}.cpp)
fuzz documents_fuzz 4096 "${locations[@]}" "${json[@]}" "${texts[@]}"
