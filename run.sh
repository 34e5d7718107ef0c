#!/usr/bin/env bash
# Builds the product and shows it at work in a private Wine prefix, installing what that needs (as root or with
# sudo): a folder is protected, wrecked, and brought back by One Click Restore; then an earlier version of a file.
#
#   ./run.sh
#
# Every window is a real one, and its picture is kept in build/x64-release/screenshots. With a display of your own,
# a window of the small Explorer stays open at the end until you close it.
. "$(dirname "$0")/scripts/lib.sh"
expect_end "$@"

longest_session_s=86400
own_display=${DISPLAY:-}

# On the person's own display the prefix starts anew: a desktop stays with the display that it first met.
show_to_the_person() {
    step "The folder \"Orvane\" on your display; close the window to end"
    stop_what_was_started
    ORV_DISPLAY=$own_display "$ORV_ROOT/scripts/install.sh" install
    wine_environment
    # There a window manager draws the frames.
    local setting
    for setting in Managed Decorated; do
        run_wine 60 reg add 'HKCU\Software\Wine\X11 Driver' /v "$setting" /d Y /f >/dev/null 2>&1
    done
    run_wine "$longest_session_s" "$ORV_ROOT/build/$ORV_PRESET/bin/shellhost.exe"
}

stop_what_was_started() { "$ORV_ROOT/scripts/prefix.sh" down; }

step "Building $ORV_PRESET"
"$ORV_ROOT/scripts/build.sh"
trap stop_what_was_started EXIT
trap 'exit 130' INT TERM
"$ORV_ROOT/scripts/story.sh" --keep
[ -z "$own_display" ] || show_to_the_person
step "Done"
