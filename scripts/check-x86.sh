#!/usr/bin/env bash
# Builds the 32-bit module, checks its image, and runs it: the tests that load the module as a host does (class
# objects, registration, menus, the folder, unloading) as 32-bit programs, with the 64-bit development driver.
#
#   scripts/check-x86.sh
. "$(dirname "$0")/lib.sh"
expect_end "$@"

tests='^(image_.*|apart_prefix_.*|module_frame_tests|module_menus_tests|module_registration_tests|namespace_module_tests|ovufc_runtime_tests)$'

# What a 32-bit program cannot be shown here. In Wine 8 it is given no icon, not even one of the system's:
without_icons=(
    'MenuIconCalls.*'
    ChronelFlow.dialog_is_shown_the_list_as_the_driver_wrote_it
    FolderMenu.calls_are_made_by_position_in_order
    FolderMenu.submenu_carries_the_products_bitmap_and_its_items_none
    Leaks.folder_menu_gives_every_handle_back
    TrackedFileMenu.file_has_one_item_with_the_popup_flag_and_a_command_number
    TrackedFileMenu.hosts_menu_holds_the_item
)
# And 32-bit GCC finds handlers by tables of each module's own, so a test's exception does not get through the product:
without_exceptions=(
    Addons.error_in_the_question_ends_the_command_quietly
    Addons.error_while_telling_is_the_failure_message
    OutOfMemory.more_threads_at_once_than_there_is_reserve_for_are_each_refused
    Restore.error_in_the_prompt_ends_the_turn
    Restore.error_in_the_stop_message_too_still_ends_the_turn
    Restore.error_on_the_way_is_the_stop_message_and_ends_the_turn
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
    timeout --kill-after=30 900 ctest -j2 --output-on-failure --no-tests=error -R "$tests"
)
if "$ORV_ROOT/scripts/wine-run.sh" --driver -- "$build/bin/module_menus_tests.exe" \
    --gtest_filter=FolderMenu.submenu_carries_the_products_bitmap_and_its_items_none >/dev/null 2>&1; then
    die "32-bit programs are given icons now: the list above should go, and what docs/wine-differences.md says of it"
fi
say "Left out: $((${#without_icons[@]} + ${#without_exceptions[@]})) tests or groups, listed in this script." \
    "Whole run: $((SECONDS - start_s)) s."
