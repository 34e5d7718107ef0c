#include <shlobj.h>
#include <wrl/client.h>

#include <cwchar>
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
    L"shellhost [--browse PLACE] [--view icons|list|details] [--size WIDTHxHEIGHT] [--close-after SECONDS]\n"
    L"          [--screenshot-ready] [--script] [--module DLL]\n"
    L"  Opens a window with the system's own explorer browser, at the namespace folder.\n"
    L"\n"
    L"  --browse PLACE         shows this folder first: a path, or \"::{class id}\"\n"
    L"  --view MODE            shows it so, whatever the folder would choose\n"
    L"  --size WIDTHxHEIGHT    the window's size in pixels (1000x640)\n"
    L"  --close-after SECONDS  closes the window by itself\n"
    L"  --screenshot-ready     prints \"ready\" and the title once the window has settled\n"
    L"  --script               reads commands from standard input, one a line; \"help\" lists them\n"
    L"  --module DLL           takes the product's classes from this file, whatever is registered\n";

namespace {

constexpr int default_width = 1000;
constexpr int default_height = 640;
constexpr int least_size = 100;
constexpr int most_size = 10000;
constexpr unsigned longest_s = 86400;
constexpr UINT_PTR close_timer = 1;
constexpr UINT ms_per_s = 1000;

struct window_options {
    std::wstring place;
    int mode = 0;
    int width = default_width;
    int height = default_height;
    std::optional<unsigned> close_after_s;
    bool says_ready = false;
    bool takes_script = false;
    std::wstring module;
};

int read_mode(const std::wstring& text) {
    if (text == L"icons") {
        return command_large_icons;
    }
    if (text == L"list") {
        return command_list;
    }
    if (text == L"details") {
        return command_details;
    }
    throw usage_error(L"--view takes icons, list or details, not '" + text + L"'");
}

void read_size(const std::wstring& text, window_options& options) {
    wchar_t* end = nullptr;
    options.width = static_cast<int>(std::wcstol(text.c_str(), &end, 10));
    options.height = *end == L'x' ? static_cast<int>(std::wcstol(end + 1, &end, 10)) : 0;
    const bool sensible = options.width >= least_size && options.width <= most_size &&
                          options.height >= least_size && options.height <= most_size;
    if (!sensible || *end != L'\0') {
        throw usage_error(L"--size takes a width and a height, as in 1000x640, not '" + text + L"'");
    }
}

window_options read_options(arguments& words) {
    window_options options;
    options.place = words.take_value(L"--browse").value_or(L"");
    options.close_after_s = words.take_number(L"--close-after", 1, longest_s);
    options.says_ready = words.take_switch(L"--screenshot-ready");
    options.takes_script = words.take_switch(L"--script");
    options.module = words.take_value(L"--module").value_or(L"");
    if (const auto mode = words.take_value(L"--view")) {
        options.mode = read_mode(*mode);
    }
    if (const auto size = words.take_value(L"--size")) {
        read_size(*size, options);
    }
    words.expect_end();
    return options;
}

stand_ins::unique_absolute_list first_place(const std::wstring& place) {
    if (place.empty()) {
        auto root = list_of_namespace_root();
        if (root != nullptr && !registered_module_of(class_ids::namespace_folder).empty()) {
            return root;
        }
        print_error(L"the namespace folder is not registered; showing the desktop");
        PIDLIST_ABSOLUTE desktop = nullptr;
        (void)SHGetKnownFolderIDList(FOLDERID_Desktop, 0, nullptr, &desktop);
        return stand_ins::unique_absolute_list(desktop);
    }
    PIDLIST_ABSOLUTE list = nullptr;
    const HRESULT result = SHParseDisplayName(place.c_str(), nullptr, &list, 0, nullptr);
    if (FAILED(result)) {
        throw command_failure(L"there is no place '" + place + L"': " + describe(result));
    }
    return stand_ins::unique_absolute_list(list);
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
    if (!options.says_ready && !options.takes_script) {
        leave_own_console();
    }
    const apartment com;
    stand_ins::set_elevation_listener(&say_consent);
    const product_module product(options.module);
    browser_window window(options.width, options.height);
    const HRESULT browsed = window.browse(first_place(options.place).get());
    if (FAILED(browsed)) {
        throw command_failure(L"the folder cannot be shown: " + describe(browsed));
    }
    if (options.mode != 0) {
        window.set_mode(options.mode);
    }
    if (options.close_after_s) {
        SetTimer(window.handle(), close_timer, *options.close_after_s * ms_per_s,
                 [](HWND handle, UINT, UINT_PTR, DWORD) { PostMessageW(handle, WM_CLOSE, 0, 0); });
    }
    const script_session script(window, options.says_ready, options.takes_script);
    pump(window);
    return exit_done;
}

}  // namespace ov::shellhost
