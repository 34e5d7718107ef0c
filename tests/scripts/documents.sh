#!/usr/bin/env bash
# scripts/check-documents.sh finds each kind of untruth in a document.
#
#   documents.sh ROOT FOLDER
# shellcheck disable=SC2016  # the back-quotes are of documents
set -euo pipefail

check=$1/scripts/check-documents.sh
work=$2
mkdir -p "$work"
# No prefix is up that would be stopped at the end.
export ORV_PREFIX=$work/prefix
failures=0

# expect TEXT: the document on standard input is refused with TEXT; without TEXT it passes.
expect() {
    local text=${1:-} output result=0
    cat >"$work/page.md"
    output=$("$check" "$work/page.md" 2>&1) || result=$?
    if { [ -z "$text" ] && [ "$result" != 0 ]; } || { [ -n "$text" ] && { [ "$result" = 0 ] || [[ $output != *"$text"* ]]; }; }; then
        printf 'FAILED, expected "%s" of\n%s\nfound (%s)\n%s\n' "$text" "$(cat "$work/page.md")" "$result" "$output" >&2
        failures=$((failures + 1))
    fi
}

expect <<'PAGE'
A page that is true: `scripts/prefix.sh down`, `tests/scripts/`, [itself](page.md).

    scripts/prefix.sh --help    # a remark
    true \
        --and-more

```
    no command at all
```

- an item

  with `service/calls.*`
PAGE
expect "names no command" <<<$'Do this:\n\n    scripts/no-such.sh'
expect "names no command" <<<$'Do this:\n\n    no-such-program --help'
expect "names no command" <<<$'Do this:\n\n```sh\nno-such-program\n```'
expect "ends with a failure" <<<$'Do this:\n\n    scripts/prefix.sh sideways'
expect "ends with a failure" <<<$'Do this:\n\n    ls \\\n        /no/such/place'
expect "there is no 'scripts/no-such.sh'" <<<'See `scripts/no-such.sh`.'
expect "there is no 'tests/no/such/file.h'" <<<'See `tests/no/such/file.h`.'
expect "knows nothing of 'sideways'" <<<'Say `scripts/prefix.sh sideways`.'
expect "knows nothing of '--sideways'" <<<'Say `./test.sh --sideways`.'
expect "leads nowhere" <<<'See [that page](no-such-page.md).'
[ "$failures" = 0 ] || exit 1
echo "passed"
