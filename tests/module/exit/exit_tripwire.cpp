#include "tests/module/exit/exit_tripwire.h"

#include <windows.h>

#include <cstddef>

namespace {

constexpr const wchar_t* watched[] = {L"orvshellext.dll", L"orvdialog.dll"};

void tripped() {
    TerminateProcess(GetCurrentProcess(), ov::test::tripped_exit_code);
}

template <class T>
T* at(HMODULE module, std::size_t offset) {
    return reinterpret_cast<T*>(reinterpret_cast<std::byte*>(module) + offset);
}

void watch(HMODULE module) {
    const auto* const headers = at<IMAGE_NT_HEADERS>(module, at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew);
    const auto& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (const auto* from = at<IMAGE_IMPORT_DESCRIPTOR>(module, imports.VirtualAddress); from->Name != 0;
         ++from) {
        for (auto* slot = at<void*>(module, from->FirstThunk); *slot != nullptr; ++slot) {
            DWORD protection = 0;
            VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
            *slot = reinterpret_cast<void*>(&tripped);
        }
    }
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID process_ends) {
    if (reason == DLL_PROCESS_DETACH && process_ends != nullptr) {
        for (const wchar_t* name : watched) {
            const HMODULE module = GetModuleHandleW(name);
            if (module != nullptr) {
                watch(module);
            }
        }
    }
    return TRUE;
}
