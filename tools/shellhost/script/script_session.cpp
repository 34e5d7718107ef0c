#include "tools/shellhost/script/script_session.h"

#include <array>
#include <memory>
#include <string>

#include "ovufc/win/handle.h"
#include "ovufc/win/utf8.h"
#include "tools/shellhost/command_failure.h"
#include "tools/shellhost/console.h"
#include "tools/shellhost/script/open_windows.h"
#include "tools/shellhost/script/script_commands.h"
#include "tools/wine_window/menus/menu_tracking.h"

namespace ov::shellhost {

namespace {

constexpr const wchar_t* receiver_class = L"OrvaneShellHostScript";
constexpr UINT message_command = WM_APP + 1;
constexpr UINT message_state = WM_APP + 2;
constexpr DWORD poll_ms = 60;
constexpr int quiet_polls = 6;
constexpr DWORD settle_limit_ms = 20000;
constexpr DWORD open_limit_ms = 20000;

struct exchange {
    std::wstring line;
    script_reply reply;
    std::wstring state;
};

LRESULT CALLBACK receiver_procedure(HWND receiver, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* window = reinterpret_cast<browser_window*>(GetWindowLongPtrW(receiver, GWLP_USERDATA));
    auto* asked = reinterpret_cast<exchange*>(lparam);
    if (message == message_command) {
        asked->reply = run_script_command(*window, asked->line);
        return 1;
    }
    if (message == message_state) {
        asked->state = state_of(*window);
        return 1;
    }
    return DefWindowProcW(receiver, message, wparam, lparam);
}

/// The script's side: runs on a thread of its own and knows the window by its receiver only, which may be
/// gone.
class script_reader {
  public:
    explicit script_reader(HWND receiver) : receiver_(receiver) {}

    void run() const {
        std::string line;
        while (read_line(line)) {
            const script_reply reply = answer(win::from_utf8(line).value_or(std::wstring()));
            for (const std::wstring& text : reply.lines) {
                print_line(text);
            }
            print_line(reply.error.empty() ? L"ok" : L"error: " + reply.error);
        }
        (void)ask(L"close");
    }

  private:
    static bool read_line(std::string& line) {
        line.clear();
        for (;;) {
            char byte = 0;
            DWORD read = 0;
            if (!ReadFile(GetStdHandle(STD_INPUT_HANDLE), &byte, 1, &read, nullptr) || read == 0) {
                return false;
            }
            if (byte == '\n') {
                return true;
            }
            if (byte != '\r') {
                line += byte;
            }
        }
    }

    [[nodiscard]] script_reply answer(const std::wstring& line) const {
        if (line == L"wait") {
            return settle();
        }
        if (line == L"wait-menu") {
            return wait_for(&open_menus, L"no menu opened");
        }
        if (line == L"wait-empty-menu") {
            return wait_for_empty_menu();
        }
        if (line == L"wait-dialog") {
            return wait_for(&open_dialogs, L"no dialog opened");
        }
        return ask(line);
    }

    [[nodiscard]] script_reply ask(const std::wstring& line) const {
        exchange asked{line, {}, {}};
        if (SendMessageW(receiver_, message_command, 0, reinterpret_cast<LPARAM>(&asked)) == 0) {
            return {{}, L"the window is gone"};
        }
        return asked.reply;
    }

    [[nodiscard]] script_reply settle() const {
        std::wstring last;
        int quiet = 0;
        for (const DWORD start = GetTickCount(); GetTickCount() - start < settle_limit_ms; Sleep(poll_ms)) {
            exchange asked{};
            if (SendMessageW(receiver_, message_state, 0, reinterpret_cast<LPARAM>(&asked)) == 0) {
                return {{}, L"the window is gone"};
            }
            const bool is_still = asked.state == last && asked.state.find(L"/1/") != std::wstring::npos;
            quiet = is_still ? quiet + 1 : 0;
            if (quiet == quiet_polls) {
                return {};
            }
            last = asked.state;
        }
        return {{}, L"the window does not settle"};
    }

    [[nodiscard]] static script_reply wait_for(std::vector<HWND> (*open)(), const wchar_t* failure) {
        for (const DWORD start = GetTickCount(); GetTickCount() - start < open_limit_ms; Sleep(poll_ms)) {
            if (!open().empty()) {
                Sleep(poll_ms);
                return {};
            }
        }
        return {{}, failure};
    }

    /// Each empty menu is waited for once.
    [[nodiscard]] script_reply wait_for_empty_menu() const {
        for (const DWORD start = GetTickCount(); GetTickCount() - start < open_limit_ms; Sleep(poll_ms)) {
            if (!open_menus().empty()) {
                return {{}, L"a menu opened"};
            }
            if (wine_window::empty_menus() > empty_menus_seen_) {
                ++empty_menus_seen_;
                return {};
            }
        }
        return {{}, L"no menu was asked for"};
    }

    HWND receiver_;
    mutable unsigned empty_menus_seen_ = 0;
};

DWORD WINAPI reader_thread(void* parameter) {
    const std::unique_ptr<script_reader> reader(static_cast<script_reader*>(parameter));
    reader->run();
    return 0;
}

HWND make_receiver(browser_window& window) {
    WNDCLASSW made{};
    made.lpfnWndProc = &receiver_procedure;
    made.hInstance = GetModuleHandleW(nullptr);
    made.lpszClassName = receiver_class;
    RegisterClassW(&made);
    const HWND receiver = CreateWindowExW(0, receiver_class, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                          made.hInstance, nullptr);
    SetWindowLongPtrW(receiver, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&window));
    return receiver;
}

}  // namespace

script_session::script_session(browser_window& window) : receiver_(make_receiver(window)) {
    auto reader = std::make_unique<script_reader>(receiver_);
    const win::unique_kernel_handle thread(
        CreateThread(nullptr, 0, &reader_thread, reader.get(), 0, nullptr));
    if (!thread) {
        throw command_failure(L"the script cannot be read: no thread");
    }
    (void)reader.release();  // The thread owns it from here on.
}

script_session::~script_session() {
    DestroyWindow(receiver_);
}

}  // namespace ov::shellhost
