#!/usr/bin/env bash
# Runs every check of this project one after the other, whether or not an earlier one failed, and says at the end
# which passed and how long each took. Fails when one did.
#
#   scripts/check-all.sh [STEP...]     all steps unless some are named
#
# This is `./test.sh --all`. The steps are listed below, those that answer soonest first.
. "$(dirname "$0")/lib.sh"

# A step: its name, its longest time in minutes, its command.
steps=(
    'format          2  scripts/format.sh --check'
    'shell           2  scripts/check-shell.sh'
    # Those labelled "long" too. Builds what the steps behind it use.
    'tests          35  ./test.sh -LE ^soak$'
    'home           10  scripts/check-home.sh'
    'documents      20  scripts/check-documents.sh'
    'x86            15  scripts/check-x86.sh'
    'ubsan          30  scripts/check-ubsan.sh'
    'installer      15  scripts/check-installer.sh'
    'arm64           5  scripts/check-arm64.sh'
    'reproducible   15  scripts/check-reproducible.sh'
    'lint           15  scripts/lint.sh'
)

wanted() {
    [ $# -gt 1 ] || return 0
    local name=$1 one
    shift
    for one in "$@"; do
        [ "$one" != "$name" ] || return 0
    done
    return 1
}

names=" $(printf '%s\n' "${steps[@]}" | cut -d' ' -f1 | xargs) "
for word in "$@"; do
    [[ $names == *" $word "* ]] || misused "there is no step '$word'; there are:$names"
done

cd "$ORV_ROOT"
"$ORV_ROOT/scripts/bootstrap.sh" --lint
whole_s=$SECONDS
table=
failed=0
for one in "${steps[@]}"; do
    read -r name limit_min command <<<"$one"
    wanted "$name" "$@" || continue
    read -ra words <<<"$command"
    step "[$name] $command"
    start_s=$SECONDS
    outcome=passed
    timeout --kill-after=60 "${limit_min}m" "${words[@]}" || outcome="FAILED ($?)"
    [ "$outcome" = passed ] || failed=$((failed + 1))
    table+=$(printf '%-16s %5d s  %s' "$name" $((SECONDS - start_s)) "$outcome")$'\n'
done
step "Summary"
printf '%s' "$table"
say "Together $((SECONDS - whole_s)) s; $failed failed."
[ "$failed" = 0 ]
