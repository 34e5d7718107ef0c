// click_button: clicks a button of a window on this desktop, for run.sh and the tests.
//
// It waits for the window, prints what the window says, and clicks. What it clicks are the real windows of
// the product: nothing is answered behind their back.
#include <windows.h>

#include <array>
#include <string>

#include "tools/command_line/console.h"
#include "tools/command_line/program.h"

namespace {

using ov::command_line::print_line;
using ov::command_line::print_note;

constexpr const wchar_t* help =
    L"click_button --title TEXT [--button ID] [--down COUNT] [--timeout SECONDS] [--wait-only] [--quiet]\n"
    L"\n"
    L"Waits until a visible window whose title begins with TEXT is there, prints the texts in it and\n"
    L"clicks the button with control id ID (1 is OK, 2 is Cancel; 1 unless said otherwise).\n"
    L"\n"
    L"  --down COUNT       first presses the Down key so often in what has that window's focus\n"
    L"  --timeout SECONDS  gives up after so long (20)\n"
    L"  --wait-only        clicks nothing\n"
    L"  --quiet            prints nothing\n"
    L"\n"
    L"Exit code 0: clicked. 1: no such window or button in time. 2: the call's words are off.";

constexpr DWORD poll_ms = 50;
constexpr DWORD settle_ms = 200;
constexpr DWORD ms_per_s = 1000;
constexpr unsigned longest_s = 3600;
constexpr unsigned largest_id = 65535;
constexpr unsigned most_downs = 1000;

struct options {
    std::wstring title;
    int button = IDOK;
    unsigned downs = 0;
    DWORD timeout_s = 20;
    bool clicks = true;
    bool prints = true;
};

std::wstring text_of(HWND window) {
    std::wstring text(4096, L'\0');
    const LRESULT length =
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(length));
    return text;
}

options read_options(ov::command_line::arguments& words) {
    options read;
    const auto title = words.take_value(L"--title");
    read.button = static_cast<int>(words.take_number(L"--button", 1, largest_id).value_or(IDOK));
    read.downs = words.take_number(L"--down", 0, most_downs).value_or(0);
    read.timeout_s = words.take_number(L"--timeout", 1, longest_s).value_or(read.timeout_s);
    read.clicks = !words.take_switch(L"--wait-only");
    read.prints = !words.take_switch(L"--quiet");
    words.expect_end();
    if (!title || title->empty()) {
        throw ov::command_line::usage_error(L"name the window's title by --title");
    }
    read.title = *title;
    return read;
}

struct search {
    const std::wstring& title;
    HWND found;
};

BOOL CALLBACK match_window(HWND window, LPARAM parameter) {
    auto& wanted = *reinterpret_cast<search*>(parameter);
    std::array<wchar_t, 512> title{};
    GetWindowTextW(window, title.data(), static_cast<int>(title.size()));
    if (!IsWindowVisible(window) || std::wstring(title.data()).rfind(wanted.title, 0) != 0) {
        return TRUE;
    }
    wanted.found = window;
    return FALSE;
}

HWND wait_for_window(const options& asked) {
    const DWORD start = GetTickCount();
    for (;;) {
        search wanted{asked.title, nullptr};
        EnumWindows(match_window, reinterpret_cast<LPARAM>(&wanted));
        const bool complete =
            wanted.found != nullptr && (!asked.clicks || GetDlgItem(wanted.found, asked.button) != nullptr);
        if (complete || GetTickCount() - start > asked.timeout_s * ms_per_s) {
            return complete ? wanted.found : nullptr;
        }
        Sleep(poll_ms);
    }
}

void press_down(HWND window, unsigned count) {
    GUITHREADINFO input{};
    input.cbSize = sizeof input;
    if (!GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &input)) {
        return;
    }
    for (unsigned i = 0; i < count; ++i) {
        PostMessageW(input.hwndFocus, WM_KEYDOWN, VK_DOWN, 1);
        PostMessageW(input.hwndFocus, WM_KEYUP, VK_DOWN, 1);
    }
    Sleep(settle_ms);
}

BOOL CALLBACK print_child(HWND child, LPARAM /*parameter*/) {
    const std::wstring text = text_of(child);
    if (IsWindowVisible(child) && !text.empty()) {
        std::array<wchar_t, 64> kind{};
        GetClassNameW(child, kind.data(), static_cast<int>(kind.size()));
        const bool is_button = lstrcmpiW(kind.data(), L"Button") == 0;
        print_line(is_button ? L"  [" + text + L"]" : L"  " + text);
    }
    return TRUE;
}

int click(ov::command_line::arguments& words) {
    const options asked = read_options(words);
    const HWND window = wait_for_window(asked);
    if (window == nullptr) {
        print_note(L"click_button: no window '" + asked.title + L"' with button " +
                   std::to_wstring(asked.button) + L" within " + std::to_wstring(asked.timeout_s) + L" s");
        return 1;
    }
    Sleep(settle_ms);
    press_down(window, asked.downs);
    if (asked.prints) {
        print_line(L"window \"" + text_of(window) + L"\"");
        EnumChildWindows(window, print_child, 0);
    }
    if (asked.clicks) {
        PostMessageW(GetDlgItem(window, asked.button), BM_CLICK, 0, 0);
    }
    return 0;
}

}  // namespace

int main() {
    return ov::command_line::run_program(L"click_button", help, ov::command_line::words_of_process(), click);
}
