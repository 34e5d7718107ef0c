#!/usr/bin/env bash
# Runs clang-tidy on the project's sources; fails on any finding.
#
#   scripts/lint.sh [--limit-s SECONDS] [FILE...]    all sources unless files are named
#
#   --limit-s SECONDS   begins no further file after that time. What changed lately comes first: in the files not yet
#                       committed, then in the commits of the four hours before the newest. The others follow
#                       from a place that differs from commit to commit, so that a few runs see them all.
. "$(dirname "$0")/lib.sh"

limit_s=
if [ "${1:-}" = --limit-s ]; then
    [[ ${2:-} =~ ^[0-9]+$ ]] || misused "--limit-s needs a number of seconds"
    limit_s=$2
    shift 2
fi
[[ ${1:-} != -* ]] || misused "unknown option '$1'"

"$ORV_ROOT/scripts/bootstrap.sh" --lint --bench
cd "$ORV_ROOT"
cmake --preset lint >/dev/null

sources() { git ls-files '*.cpp' '*.c'; }

# Sources and headers, newest first. A commit without a parent, which a shallow clone has too, would name every file.
changed() {
    git diff --name-only HEAD
    git log --min-parents=1 --since="$(($(git log -1 --format=%ct) - 4 * 3600))" --format= --name-only
}

# A header is looked at in one file that includes it.
changed_sources() {
    changed | while read -r file; do
        case $file in
        *.cpp | *.c) printf '%s\n' "$file" ;;
        *.h) git grep -l -F "#include \"$file\"" -- '*.cpp' '*.c' | head -n1 || true ;;
        esac
    done
}

rotated() {
    local count start
    count=$(sources | wc -l)
    start=$((16#$(git rev-parse HEAD | cut -c1-8) % count))
    sources | tail -n +$((start + 1))
    sources | head -n "$start"
}

files=("$@")
if [ ${#files[@]} -eq 0 ]; then
    # Files that were taken away since are no longer among the sources.
    mapfile -t files < <({ changed_sources && rotated; } | awk '!seen[$0]++' | grep -Fxf <(sources))
fi

# clang reads GCC's headers for the target; what GCC alone understands is no finding.
gcc_include=$(x86_64-w64-mingw32-g++ -print-file-name=include)
cxx_include=$(dirname "$gcc_include")/include/c++
tidy=(timeout 300 clang-tidy-22 -p build/lint --quiet --extra-arg=--target=x86_64-w64-mingw32
    --extra-arg=-isystem"$cxx_include" --extra-arg=-isystem"$cxx_include/x86_64-w64-mingw32"
    --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-ignored-attributes
    --extra-arg=-Wno-unnecessary-virtual-specifier --extra-arg=-Wno-deprecated-declarations)

looked_at=$(mktemp)
export looked_at
trap 'rm -f "$looked_at"' EXIT
end_s=$((EPOCHSECONDS + ${limit_s:-86400}))
result=0
# shellcheck disable=SC2016 # expanded by the inner shell: $0 is the end, the last word the file
printf '%s\0' "${files[@]}" | xargs -0 -n1 -P"$(nproc)" bash -c '
    [ "$EPOCHSECONDS" -lt "$0" ] || exit 0
    printf "%s\n" "${@: -1}" >>"$looked_at"
    "$@"' "$end_s" "${tidy[@]}" || result=1
say "$(wc -l <"$looked_at") of ${#files[@]} files looked at"
exit "$result"
