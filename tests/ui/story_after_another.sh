#!/usr/bin/env bash
# The story can be told after one that was broken off when the folder had just been protected, as by somebody who was
# tired of waiting.
#
#   story_after_another.sh STORY
set -euo pipefail
story=$1
no_pictures=$(mktemp -d)
trap 'rm -rf "$no_pictures"' EXIT
printf '#!/bin/sh\nexit 1\n' >"$no_pictures/import"
chmod +x "$no_pictures/import"
if PATH="$no_pictures:$PATH" "$story"; then
    echo "the story did not end at the picture that could not be taken" >&2
    exit 1
fi
"$story"
