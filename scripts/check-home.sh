#!/usr/bin/env bash
# Runs both commands, run.sh and test.sh, with a home of its own and a new Wine prefix, and finds that home untouched
# and the prefix's folders of a person inside the prefix.
#
#   scripts/check-home.sh
. "$(dirname "$0")/lib.sh"
expect_end "$@"

build="$ORV_ROOT/build/$ORV_PRESET"
home="$build/check-home"
export ORV_PREFIX="$build/prefix-home"

clean_up() {
    "$ORV_ROOT/scripts/prefix.sh" remove
    rm -rf "$home" "$home".{before,after}
}

# Every file and folder with the time of its last change.
listing() { find "$home" -printf '%P %y %T@ %s\n' | sort; }

expect_untouched() {
    listing >"$home.after"
    diff "$home.before" "$home.after" >&2 || die "$1 changed the home of the person who ran it"
}

# A program that saves into a person's folders, as the exports do.
save_into_folders() {
    local folder
    for folder in Desktop Documents Downloads; do
        "$ORV_ROOT/scripts/wine-run.sh" -- cmd /c "echo saved> %USERPROFILE%\\$folder\\saved.txt"
    done
    local links
    links=$(find "$ORV_PREFIX/drive_c/users" -type l)
    [ -z "$links" ] || die "these folders of the prefix are links: $links"
}

clean_up
trap clean_up EXIT
mkdir -p "$home"/{Desktop,Documents,Downloads,Music,Pictures,Templates,Videos}
listing >"$home.before"

"$ORV_ROOT/scripts/build.sh"
step "run.sh with a home of its own"
env -u DISPLAY -u XDG_CACHE_HOME -u XDG_CONFIG_HOME -u XDG_DATA_HOME HOME="$home" "$ORV_ROOT/run.sh"
expect_untouched run.sh
step "Programs that save into Desktop, Documents and Downloads"
HOME="$home" save_into_folders
expect_untouched "a program in the prefix"
step "test.sh with a home of its own"
env -u XDG_CACHE_HOME -u XDG_CONFIG_HOME -u XDG_DATA_HOME HOME="$home" "$ORV_ROOT/test.sh" -R '^shellhost_tests$'
expect_untouched test.sh
step "The home was left alone"
