#!/usr/bin/env bash
# Builds the 32-bit module, checks its image, and runs it: the tests that load the module as a host does (class
# objects, registration, menus, the folder, unloading) as 32-bit programs, with the 64-bit development driver.
#
#   scripts/check-x86.sh
. "$(dirname "$0")/lib.sh"
expect_end "$@"

tests='^(image_.*|apart_prefix_.*|module_frame_tests|module_menus_tests|module_registration_test|namespace_module_tests)$'

# What a 32-bit program cannot be shown here. In Wine 8 it is given no icon, not even one of the system's:
without_icons=(
    'MenuIconCalls.*'
    ChronelFlow.dialog_isShownTheListAsTheDriverWroteIt
    FolderMenu.calls_areMadeByPositionInOrder
    FolderMenu.submenu_carriesTheProductsBitmapAndItsItemsNone
    Leaks.folderMenu_givesEveryHandleBack
    TrackedFileMenu.file_hasOneItemWithThePopupFlagAndACommandNumber
    TrackedFileMenu.hostsMenu_holdsTheItem
)
# And 32-bit GCC finds handlers by tables of each module's own, so a test's exception does not get through the product:
without_exceptions=(
    Addons.errorInTheQuestion_endsTheCommandQuietly
    Addons.errorWhileTelling_isTheFailureMessage
    OutOfMemory.MoreThreadsAtOnceThanThereIsReserveFor_areEachRefused
    Restore.errorInThePrompt_endsTheTurn
    Restore.errorInTheStopMessageToo_stillEndsTheTurn
    Restore.errorOnTheWay_isTheStopMessageAndEndsTheTurn
)

build_driver() {
    cd "$ORV_ROOT"
    cmake --preset x64-release && cmake --build --preset x64-release --target orvdrv
}

joined() {
    local IFS=:
    printf '%s' "$*"
}

"$ORV_ROOT/scripts/wine32.sh"
export ORV_PRESET=x86-release
build="$ORV_ROOT/build/$ORV_PRESET"
start_s=$SECONDS
step "Building $ORV_PRESET"
timeout --kill-after=10 1200 "$ORV_ROOT/scripts/build.sh"
step "Building the driver, which is 64-bit as the system is"
(build_driver) >"$build/driver.log" 2>&1 || die "the driver could not be built; see $build/driver.log"
cp "$ORV_ROOT/build/x64-release/bin/orvdrv.sys" "$build/bin/"

step "Setting up the Wine prefix"
trap '"$ORV_ROOT/scripts/prefix.sh" down' EXIT
timeout --kill-after=10 300 "$ORV_ROOT/scripts/install.sh" driver
step "Testing"
(
    cd "$build"
    GTEST_FILTER="-$(joined "${without_icons[@]}" "${without_exceptions[@]}")"
    export GTEST_FILTER
    # The signatures are those of the whole product, of which only the module and the texts are built here.
    timeout --kill-after=30 900 ctest -j2 --output-on-failure --no-tests=error -R "$tests" -E '^image_signatures$'
)
if "$ORV_ROOT/scripts/wine-run.sh" --driver -- "$build/bin/module_menus_tests.exe" \
    --gtest_filter=FolderMenu.submenu_carriesTheProductsBitmapAndItsItemsNone >/dev/null 2>&1; then
    die "32-bit programs are given icons now: the list above should go, and what docs/wine-differences.md says of it"
fi
say "Left out: $((${#without_icons[@]} + ${#without_exceptions[@]})) tests or groups, listed in this script." \
    "Whole run: $((SECONDS - start_s)) s."
