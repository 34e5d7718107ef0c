#!/usr/bin/env bash
# Writes a message table for the tests of text lookup: message 0 is the language's own tag, so that a test sees
# which language answered; the others are shapes that a message can have.
set -euo pipefail

tags=(en es fr id ja ko lt pt zhHans zhHant)
ids=(0x0409 0x0C0A 0x040C 0x0421 0x0411 0x0412 0x0427 0x0416 0x0804 0x0C04)
for i in "${!tags[@]}"; do
    printf 'LanguageNames=(%s=%s:sample_%s)\n' "${tags[i]}" "${ids[i]}" "${tags[i]}"
done

# message NUMBER [TEXT]: in all languages; the tag stands for a missing text.
message() {
    printf '\nMessageId=%s\nSeverity=Success\nFacility=Title\n' "$1"
    local tag
    for tag in "${tags[@]}"; do
        printf 'Language=%s\n%s%%0\n.\n' "$tag" "${2-$tag}"
    done
}

printf 'FacilityNames=(Title=0x0)\nSeverityNames=(Success=0x0)\n'
message 0
message 1 'before %1 after'
message 2 '%%s|%%d|%%%%'
message 3 "$(printf 'x%.0s' {1..2047})"
message 4 "$(printf 'x%.0s' {1..2048})"
message 5 'no placeholder'
