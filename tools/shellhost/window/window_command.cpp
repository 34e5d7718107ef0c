#include <shlobj.h>
#include <wrl/client.h>

#include <memory>
#include <optional>
#include <string>

#include "module/state/class_ids.h"
#include "tools/shellhost/apartment.h"
#include "tools/shellhost/command_failure.h"
#include "tools/shellhost/commands.h"
#include "tools/shellhost/console.h"
#include "tools/shellhost/exit_codes.h"
#include "tools/shellhost/folder/namespace_root.h"
#include "tools/shellhost/product_module.h"
#include "tools/shellhost/script/script_session.h"
#include "tools/shellhost/window/browser_window.h"
#include "tools/stand_ins/elevation.h"

namespace ov::shellhost {

const wchar_t* const window_usage =
    L"shellhost [--browse PLACE] [--close-after SECONDS] [--script] [--module DLL]\n"
    L"  Opens a window with the system's own explorer browser, at the namespace folder.\n"
    L"\n"
    L"  --browse PLACE         shows this folder first: a path, or \"::{class id}\"\n"
    L"  --close-after SECONDS  closes the window by itself\n"
    L"  --script               reads commands from standard input, one a line; \"help\" lists them\n"
    L"  --module DLL           takes the product's classes from this file, whatever is registered\n";

namespace {

constexpr unsigned longest_s = 86400;
constexpr UINT_PTR close_timer = 1;
constexpr UINT ms_per_s = 1000;

struct window_options {
    std::wstring place;
    std::optional<unsigned> close_after_s;
    bool takes_script = false;
    std::wstring module;
};

window_options read_options(arguments& words) {
    window_options options;
    options.place = words.take_value(L"--browse").value_or(L"");
    options.close_after_s = words.take_number(L"--close-after", 1, longest_s);
    options.takes_script = words.take_switch(L"--script");
    options.module = words.take_value(L"--module").value_or(L"");
    words.expect_end();
    return options;
}

com::unique_absolute_id_list first_place(const std::wstring& place) {
    if (place.empty()) {
        auto root = list_of_namespace_root();
        if (root != nullptr && !registered_module_of(class_ids::namespace_folder).empty()) {
            return root;
        }
        print_error(L"the namespace folder is not registered; showing the desktop");
        PIDLIST_ABSOLUTE desktop = nullptr;
        (void)SHGetKnownFolderIDList(FOLDERID_Desktop, 0, nullptr, &desktop);
        return com::unique_absolute_id_list(desktop);
    }
    PIDLIST_ABSOLUTE list = nullptr;
    const HRESULT result = SHParseDisplayName(place.c_str(), nullptr, &list, 0, nullptr);
    if (FAILED(result)) {
        throw command_failure(L"there is no place '" + place + L"': " + describe(result));
    }
    return com::unique_absolute_id_list(list);
}

void say_consent(stand_ins::consent /*answer*/) {
    print_note(L"This system has no administrator prompt: consent is given in its place.");
}

/// A window of its own needs no console; one that was opened for it alone is let go.
void leave_own_console() {
    DWORD processes[2] = {};
    if (GetConsoleProcessList(processes, 2) == 1) {
        FreeConsole();
    }
}

void pump(const browser_window& window) {
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!window.translate(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

}  // namespace

int run_window(arguments& words) {
    const window_options options = read_options(words);
    if (!options.takes_script) {
        leave_own_console();
    }
    const apartment com;
    stand_ins::set_elevation_listener(&say_consent);
    const product_module product(options.module);
    browser_window window;
    const HRESULT browsed = window.browse(first_place(options.place).get());
    if (FAILED(browsed)) {
        throw command_failure(L"the folder cannot be shown: " + describe(browsed));
    }
    if (options.close_after_s) {
        SetTimer(window.handle(), close_timer, *options.close_after_s * ms_per_s,
                 [](HWND handle, UINT, UINT_PTR, DWORD) { PostMessageW(handle, WM_CLOSE, 0, 0); });
    }
    std::optional<script_session> script;
    if (options.takes_script) {
        script.emplace(window);
    }
    pump(window);
    return exit_done;
}

}  // namespace ov::shellhost
