#include "tests/module/exit/busy_host.h"

#include <windows.h>
#include <objbase.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <array>

#include "module/state/class_ids.h"
#include "testkit/process/shipped_module.h"
#include "testkit/shell/data_object.h"

namespace ov::test::busy_host {

namespace {

using Microsoft::WRL::ComPtr;

constexpr DWORD patience_ms = 20'000;

struct host {
    const shipped_module module;
    std::wstring folder;
};

ComPtr<IContextMenu> menu_on(const host& in, const wchar_t* name) {
    ComPtr<IContextMenu> menu;
    (void)in.module.create(class_ids::shell_extension, IID_PPV_ARGS(&menu));
    ComPtr<IShellExtInit> init;
    menu.As(&init);
    const auto selection = select_paths({in.folder + L'\\' + name});
    init->Initialize(nullptr, selection.Get(), nullptr);
    return menu;
}

void invoke(IContextMenu* menu, UINT_PTR offset) {
    CMINVOKECOMMANDINFO info{};
    info.cbSize = sizeof info;
    info.lpVerb = reinterpret_cast<LPCSTR>(offset);
    menu->InvokeCommand(&info);
}

void make_folder_object(const host& in) {
    ComPtr<IShellFolder> made;
    (void)in.module.create(class_ids::namespace_folder, IID_PPV_ARGS(&made));
}

using act = void(const host& in);
// Of the two that make a folder object, one asks the driver for the locations, and the other waits for that
// one.
constexpr std::array<act*, 5> acts{
    [](const host& in) { menu_on(in, silent_folder); },
    make_folder_object,
    make_folder_object,
    [](const host& in) { invoke(menu_on(in, protected_folder).Get(), 0); },
    [](const host& in) { invoke(menu_on(in, protected_folder).Get(), 1); },
};
constexpr int expected_windows = 2;

struct thread_start {
    const host* in;
    act* what;
};

DWORD WINAPI run(void* start) {
    const auto& mine = *static_cast<const thread_start*>(start);
    (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    mine.what(*mine.in);
    return 0;
}

int windows_of_this_process() {
    int count = 0;
    EnumWindows(
        [](HWND window, LPARAM counted) -> BOOL {
            DWORD process_id = 0;
            GetWindowThreadProcessId(window, &process_id);
            *reinterpret_cast<int*>(counted) +=
                process_id == GetCurrentProcessId() && IsWindowVisible(window) != FALSE ? 1 : 0;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

}  // namespace

void play(const std::wstring& folder) {
    const host in{.module = shipped_module(), .folder = folder};
    std::array<HANDLE, acts.size()> threads{};  // as long as the process
    std::array<thread_start, acts.size()> starts{};
    for (std::size_t i = 0; i < acts.size(); ++i) {
        starts[i] = {&in, acts[i]};
        threads[i] = CreateThread(nullptr, 0, &run, &starts[i], 0, nullptr);
    }
    const DWORD started = GetTickCount();
    while (windows_of_this_process() < expected_windows) {
        Sleep(50);
        if (GetTickCount() - started > patience_ms) {
            ExitProcess(not_busy_exit_code);
        }
    }
    Sleep(500);  // the others need less than the windows did
    for (const HANDLE thread : threads) {
        if (WaitForSingleObject(thread, 0) != WAIT_TIMEOUT) {
            ExitProcess(not_busy_exit_code);
        }
    }
    LoadLibraryW(L"exit_tripwire.dll");
    ExitProcess(ended_exit_code);
}

}  // namespace ov::test::busy_host
