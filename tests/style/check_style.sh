#!/usr/bin/env bash
# Fails when a test, a test program or a class that must not be copied is not written in the project's one form.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cd "$here/../.."

findings() { awk -f "$here/style.awk" "$@"; }

sources() {
    find . -path ./build -prune -o -path ./.git -prune -o \
        \( -name '*.cpp' -o -name '*.h' -o -name CMakeLists.txt \) -type f -print
}

mapfile -t files < <(sources)
[ "${#files[@]}" -gt 500 ] || { echo "only ${#files[@]} files found" >&2; exit 1; }
findings "${files[@]}"

# Each of these goes against one rule.
planted=$(mktemp -d)
trap 'rm -rf "$planted"' EXIT
while IFS= read -r line; do
    printf '%b\n' "$line" >"$planted/planted.cpp"
    if findings "$planted/planted.cpp" >/dev/null; then
        echo "the check lets this pass: $line" >&2
        exit 1
    fi
done <<'PLANTED'
TEST(Subject, conditionInCapitals_outcome) {
TEST_F(subject, condition_outcome) {
TEST_P(Subject,\n       Condition_outcome) {
orv_test_program(\n    subject_test
orv_test_program(subject
    subject& operator=(const subject&) = delete;
PLANTED
