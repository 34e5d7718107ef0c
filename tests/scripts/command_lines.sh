#!/usr/bin/env bash
# What every command of this project does with words that it does not know: it names the word on standard error and
# ends with 2, and answers --help wherever that stands with 0; programs know their version too.
#
#   command_lines.sh scripts ROOT          the scripts
#   command_lines.sh programs ROOT BIN     the programs in BIN, under Wine
set -euo pipefail

root=$2
bin=${3:-}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    failures=$((failures + 1))
}

# run COMMAND...: leaves its exit code in `code`, what it wrote in $work/out and $work/err.
run() {
    code=0
    timeout 60 "$@" >"$work/out" 2>"$work/err" </dev/null || code=$?
}

# refuses WORD COMMAND...
refuses() {
    local word=$1
    shift
    run "$@"
    [ "$code" = 2 ] || fail "'$*' ends with $code, not 2"
    [ ! -s "$work/out" ] || fail "'$*' prints its complaint to standard output"
    grep -qF -- "$word" "$work/err" || fail "'$*' does not name '$word': $(head -n 3 "$work/err")"
}

helps() {
    run "$@"
    [ "$code" = 0 ] || fail "'$*' ends with $code, not 0"
    [ ! -s "$work/err" ] || fail "'$*' gives help on standard error"
    [ "$(wc -l <"$work/out")" -gt 1 ] || fail "'$*' gives no help"
}

scripts() {
    local script
    for script in "$root"/*.sh "$root"/scripts/*.sh; do
        # Those that are to be sourced are no commands.
        [ -x "$script" ] || continue
        helps "$script" --help
        helps "$script" --no-such-option -h
        # These hand their words on, to files or programs that they name.
        case $(basename "$script") in lint.sh) continue ;; esac
        refuses no-such-word "$script" no-such-word
        refuses --no-such-option "$script" --no-such-option
        ORV_PRESET=no-such-preset refuses no-such-preset "$script"
    done
    refuses -R "$root/test.sh" -R
    refuses --bad "$root/test.sh" -R name --bad
    refuses --timeout "$root/scripts/wine-run.sh" --timeout
    refuses soon "$root/scripts/wine-run.sh" --timeout soon -- cmd
    refuses x64-debug "$root/scripts/wine-run.sh" -- "$root/build/x64-debug/bin/any.exe"
    cd "$root"
    ORV_PRESET=x64-debug refuses x64-release scripts/wine-run.sh -- build/x64-release/bin/any.exe
}

programs() {
    "$root/scripts/prefix.sh" up
    # shellcheck source=../../scripts/lib.sh
    . "$root/scripts/lib.sh"
    wine_environment
    local program
    for program in orvsvc shellhost click_button orvcert; do
        helps "$WINE" "$bin/$program.exe" --help
        helps "$WINE" "$bin/$program.exe" --no-such-option word -h
        refuses --no-such-option "$WINE" "$bin/$program.exe" --no-such-option
        run "$WINE" "$bin/$program.exe" --version
        [ "$code" = 0 ] || fail "'$program --version' ends with $code, not 0"
        [ "$(tr -d '\r' <"$work/out")" = "$program $(version_of_tree)" ] || fail "'$program --version' says $(cat "$work/out")"
    done
    helps "$WINE" "$bin/orvsvc.exe" protect --help
    helps "$WINE" "$bin/shellhost.exe" menu --help
    refuses command "$WINE" "$bin/orvsvc.exe"
    refuses --state "$WINE" "$bin/orvsvc.exe" list --state
    refuses dance "$WINE" "$bin/orvsvc.exe" dance
    refuses perhaps "$WINE" "$bin/orvsvc.exe" flags --exports perhaps
    refuses nowhere "$WINE" "$bin/orvsvc.exe" cloud add --provider nowhere 'C:\x'
    refuses dance "$WINE" "$bin/shellhost.exe" dance
    refuses --invoke "$WINE" "$bin/shellhost.exe" menu 'C:\x' --invoke
    refuses never "$WINE" "$bin/shellhost.exe" --close-after never
    refuses more "$WINE" "$bin/shellhost.exe" list more
    refuses --title "$WINE" "$bin/click_button.exe"
    refuses --title "$WINE" "$bin/click_button.exe" --title
    refuses soon "$WINE" "$bin/click_button.exe" --title x --timeout soon
    refuses borrow "$WINE" "$bin/orvcert.exe" borrow x
    refuses file "$WINE" "$bin/orvcert.exe" install
    # What it has to say besides the menu is kept out of the menu.
    run "$WINE" "$bin/shellhost.exe" menu 'C:\windows' --module "$bin/orvshellext.dll"
    grep -q '^Menu of' "$work/out" || fail "shellhost prints no menu"
    grep -q '^This system lacks these' "$work/err" || fail "shellhost's note is not on standard error"
    ! grep -q '^This system lacks these' "$work/out" || fail "shellhost's note is among its output"
}

"$1"
[ "$failures" = 0 ] || exit 1
echo "passed"
