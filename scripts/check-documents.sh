#!/usr/bin/env bash
# Does what the documents tell a reader to do: runs their commands, and looks for every file, option and page that they
# name.
#
#   scripts/check-documents.sh [--no-run] [FILE...]     README, CONTRIBUTING and docs/ unless files are named
#
#   --no-run   runs nothing; a command is only looked for
#
# A block of commands is one indented by four spaces, or fenced and marked "sh".
. "$(dirname "$0")/lib.sh"
running=yes
if [ "${1:-}" = --no-run ]; then
    running=no
    shift
fi
cd "$ORV_ROOT"
documents=("$@")
if [ $# -eq 0 ]; then
    mapfile -t documents < <(git ls-files '*.md')
fi
for document in "${documents[@]}"; do
    [ -f "$document" ] || misused "there is no document '$document'"
done

longest_min=15
bin="build/$ORV_PRESET/bin"
work=$(mktemp -d)
trap 'rm -rf "$work"; "$ORV_ROOT/scripts/prefix.sh" down' EXIT
failures=0

fail() {
    printf 'FAILED %s\n' "$*" >&2
    failures=$((failures + 1))
}

# What CI runs by itself, word for word, and where.
run_elsewhere() {
    case $1 in
    ./run.sh | './test.sh -R service') say "check-home.sh runs it, or another name" ;;
    ./test.sh | './test.sh --all'*) say "this is it" ;;
    scripts/check-*.sh) say "a step of ./test.sh --all" ;;
    './bench.sh --check') say "its figures are for an idle machine; the single run is tried here" ;;
    'ORV_PRESET=x64-debug scripts/build.sh') say "takes long; built once a release" ;;
    scripts/release.sh*) say "check-installer.sh and check-reproducible.sh do" ;;
    'ORV_SIGNING_PKCS12='*) say "tests/scripts/release_signer.sh and tests/installer/signed_release.sh do, with signers of their own" ;;
    *) return 1 ;;
    esac
}

# The commands of a document, one a line: continued lines joined, remarks taken off.
commands() {
    awk '
        /^```/ { inside = inside ? 0 : ($0 == "```sh" ? 2 : 1); next }
        inside == 2 || (!inside && ((blank && /^    [^ ]/) || (block && /^    /))) {
            line = $0
            sub(/^    /, "", line)
            sub(/(^|  *)#.*$/, "", line)
            block = 1
            joined = joined line
            if (sub(/\\$/, " ", joined)) next
            if (joined != "") print joined
            joined = ""
            next
        }
        { block = 0; blank = ($0 == "") }
    ' "$1" | tr -s ' '
}

# The first word that is no setting; a program of Wine's is behind the "--".
program_of() {
    local word
    for word in $1; do
        case $word in
        [A-Z]*=*) ;;
        *) printf '%s' "$word" && return ;;
        esac
    done
}

look_for_command() {
    local program
    program=$(program_of "$1")
    case $program in
    */*) [ -x "$program" ] ;;
    *) command -v "$program" >/dev/null ;;
    esac
}

check_commands() {
    local document=$1 command why
    while IFS= read -r command; do
        if ! look_for_command "${command##*\$(*) }"; then
            fail "$document: '$command' names no command"
        elif why=$(run_elsewhere "$command"); then
            say "  $command    ($why)"
        elif [ "$running" = yes ]; then
            say "  $command"
            timeout --kill-after=30 "${longest_min}m" bash -euo pipefail -c "$command" >"$work/log" 2>&1 </dev/null ||
                { tail -n 20 "$work/log" >&2 && fail "$document: '$command' ends with a failure"; }
        fi
    done < <(commands "$document")
}

# help_of WORD: what a script or program of ours says of itself; kept, as Wine is slow to start.
help_of() {
    local kept=$work/${1//\//_}.help
    if [ ! -f "$kept" ]; then
        case $1 in
        *.sh) "$1" --help >"$kept" ;;
        *) scripts/wine-run.sh -- "$bin/$1.exe" --help | tr -d '\r' >"$kept" ;;
        esac
    fi
    cat "$kept"
}

# check_words DOCUMENT NAME WORDS: each word that is not a placeholder stands in the help of NAME.
check_words() {
    local word help
    help=$(help_of "$2") || fail "$1: '$2' has no help"
    for word in ${3//|/ }; do
        case $word in
        --help | *[A-Z.]*) ;;
        *) grep -qwF -- "$word" <<<"$help" || fail "$1: '$2' knows nothing of '$word'" ;;
        esac
    done
}

# Names between back-quotes: commands with their words, files and folders.
check_names() {
    local document=$1 name
    local rooms
    rooms=$(git ls-tree -d --name-only HEAD | paste -sd '|')
    while IFS= read -r name; do
        if [[ $name =~ ^(\./[a-z]+\.sh|scripts/[a-z-]+\.sh)(\ (.*))?$ ]]; then
            if [ ! -f "${BASH_REMATCH[1]}" ]; then
                fail "$document: there is no '${BASH_REMATCH[1]}'"
            elif [ -x "${BASH_REMATCH[1]}" ]; then
                check_words "$document" "${BASH_REMATCH[1]}" "${BASH_REMATCH[3]}"
            fi
        elif [[ $name =~ ^(orvsvc|shellhost|click_button|orvcert)(\.exe)?\ (.*)$ ]]; then
            check_words "$document" "${BASH_REMATCH[1]}" "${BASH_REMATCH[3]}"
        elif [[ $name =~ ^($rooms)/[A-Za-z0-9_./*-]*$ ]]; then
            compgen -G "$name" >/dev/null || compgen -G "$name.*" >/dev/null || fail "$document: there is no '$name'"
        fi
    done < <(grep -oE $'\x60[^\x60]+\x60' "$document" | tr -d '\140' | sort -u)
}

check_links() {
    local document=$1 link
    while IFS= read -r link; do
        [ -e "$(dirname "$document")/${link%%#*}" ] || fail "$document: the link to '$link' leads nowhere"
    done < <(grep -oE '\]\([^):]+\)' "$document" | sed 's/^](//;s/)$//')
}

[ "$running" = no ] || [ $# -gt 0 ] || scripts/build.sh
for document in "${documents[@]}"; do
    say "$document"
    check_names "$document"
    check_links "$document"
    check_commands "$document"
done
[ "$failures" = 0 ] || die "$failures of what the documents say is not so"
