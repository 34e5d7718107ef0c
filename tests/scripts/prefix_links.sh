#!/usr/bin/env bash
# A prefix that is brought up has no link into the home in a person's folders; what programs keep among their temporary
# files is left alone.
#
#   prefix_links.sh SCRIPTS     in a prefix that is up
set -euo pipefail

scripts=$1
# shellcheck source=../../scripts/lib.sh
. "$scripts/lib.sh"
wine_environment

person=$ORV_PREFIX/drive_c/users/$(id -un)
[ -d "$person/Temp" ] || die "$person/Temp is not where temporary files are"
trap 'rm -rf "$person/Temp/kept" "$person/Linked"' EXIT
ln -sfn "$HOME" "$person/Linked"
ln -sfn "$HOME" "$person/Temp/kept"

"$scripts/prefix.sh" up
[ ! -L "$person/Linked" ] || die "a person's folder is still a link"
[ -d "$person/Linked" ] || die "a person's folder is gone"
[ -L "$person/Temp/kept" ] || die "a program's own link is gone"
echo "passed"
