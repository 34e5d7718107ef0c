// press: presses a button of a window on this desktop, as a person would, for run.sh and the tests.
//
// It waits for the window, prints what the window says, and clicks. What it presses are the real windows of
// the product: nothing is answered behind their back.
#include <windows.h>
#include <shellapi.h>

#include <array>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr const char* usage =
    "press --title TEXT [--button ID] [--timeout SECONDS] [--wait-only] [--quiet]\n"
    "\n"
    "Waits until a visible window whose title begins with TEXT is there, prints the texts in it and presses\n"
    "the button with control id ID (1 is OK, 2 is Cancel; 1 unless said otherwise).\n"
    "\n"
    "  --timeout SECONDS  gives up after so long (20)\n"
    "  --wait-only        presses nothing\n"
    "  --quiet            prints nothing\n"
    "\n"
    "Exit code 0: pressed. 1: no such window or button in time. 2: the call's words are off.\n";

constexpr DWORD poll_ms = 50;
constexpr DWORD settle_ms = 200;

struct options {
    std::wstring title;
    int button = IDOK;
    DWORD timeout_ms = 20000;
    bool presses = true;
    bool prints = true;
};

std::string to_utf8(const std::wstring& text) {
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0,
                                          nullptr, nullptr);
    std::string result(static_cast<size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(), bytes, nullptr,
                        nullptr);
    return result;
}

std::wstring text_of(HWND window) {
    std::wstring text(4096, L'\0');
    const LRESULT length =
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(length));
    return text;
}

bool read_options(int count, wchar_t** words, options& read) {
    for (int i = 1; i < count; ++i) {
        const std::wstring word = words[i];
        const bool has_value = i + 1 < count;
        if (word == L"--wait-only") {
            read.presses = false;
        } else if (word == L"--quiet") {
            read.prints = false;
        } else if (word == L"--title" && has_value) {
            read.title = words[++i];
        } else if (word == L"--button" && has_value) {
            read.button = static_cast<int>(std::wcstol(words[++i], nullptr, 10));
        } else if (word == L"--timeout" && has_value) {
            read.timeout_ms = 1000 * std::wcstoul(words[++i], nullptr, 10);
        } else {
            return false;
        }
    }
    return !read.title.empty();
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
            wanted.found != nullptr && (!asked.presses || GetDlgItem(wanted.found, asked.button) != nullptr);
        if (complete || GetTickCount() - start > asked.timeout_ms) {
            return complete ? wanted.found : nullptr;
        }
        Sleep(poll_ms);
    }
}

BOOL CALLBACK print_child(HWND child, LPARAM /*parameter*/) {
    const std::wstring text = text_of(child);
    if (IsWindowVisible(child) && !text.empty()) {
        std::array<wchar_t, 64> kind{};
        GetClassNameW(child, kind.data(), static_cast<int>(kind.size()));
        const bool is_button = lstrcmpiW(kind.data(), L"Button") == 0;
        std::printf(is_button ? "  [%s]\n" : "  %s\n", to_utf8(text).c_str());
    }
    return TRUE;
}

}  // namespace

int main() {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                &LocalFree);
    options asked;
    if (!read_options(count, words.get(), asked)) {
        std::fputs(usage, stderr);
        return 2;
    }
    const HWND window = wait_for_window(asked);
    if (window == nullptr) {
        std::fprintf(stderr, "press: no window '%s' with button %d within %lu s\n",
                     to_utf8(asked.title).c_str(), asked.button, asked.timeout_ms / 1000);
        return 1;
    }
    Sleep(settle_ms);
    if (asked.prints) {
        std::printf("window \"%s\"\n", to_utf8(text_of(window)).c_str());
        EnumChildWindows(window, print_child, 0);
    }
    if (asked.presses) {
        PostMessageW(GetDlgItem(window, asked.button), BM_CLICK, 0, 0);
    }
    return 0;
}
