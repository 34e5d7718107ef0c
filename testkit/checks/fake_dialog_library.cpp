#include "testkit/checks/fake_dialog_library.h"

#include <gtest/gtest.h>

namespace ov::test {

namespace {

// Import slots hold plain functions, which find their library here.
fake_dialog_library* current = nullptr;

// A handle that no loaded module has.
int handle_target = 0;
HMODULE fake_handle() {
    return reinterpret_cast<HMODULE>(&handle_target);
}

bool is_dialog_library(const std::wstring& path) {
    const std::wstring name = L"orvdialog.dll";
    return path.size() >= name.size() && path.compare(path.size() - name.size(), name.size(), name) == 0;
}

template <class Function>
FARPROC as_export(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

}  // namespace

fake_dialog_library::fake_dialog_library(HMODULE module)
    : load_patch_(module, "kernel32.dll", "LoadLibraryExW", &fake_dialog_library::load_library),
      find_patch_(module, "kernel32.dll", "GetProcAddress", &fake_dialog_library::find_export),
      free_patch_(module, "kernel32.dll", "FreeLibrary", &fake_dialog_library::free_library) {
    EXPECT_EQ(current, nullptr) << "one instance at a time";
    current = this;
}

fake_dialog_library::~fake_dialog_library() {
    current = nullptr;
}

HMODULE WINAPI fake_dialog_library::load_library(LPCWSTR path, HANDLE file, DWORD flags) {
    if (!is_dialog_library(path)) {
        return current->load_patch_.original()(path, file, flags);
    }
    current->events_.emplace_back("load");
    current->loads_.push_back({path, flags});
    if (current->is_missing) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    return fake_handle();
}

FARPROC WINAPI fake_dialog_library::find_export(HMODULE library, LPCSTR name) {
    if (library != fake_handle()) {
        return current->find_patch_.original()(library, name);
    }
    if (!IS_INTRESOURCE(name)) {
        current->events_.push_back(std::string("find ") + name);
        return nullptr;
    }
    const WORD ordinal = LOWORD(reinterpret_cast<ULONG_PTR>(name));
    current->events_.push_back("find " + std::to_string(ordinal));
    if (current->has_no_exports) {
        return nullptr;
    }
    switch (ordinal) {
        case dialog::protect_ordinal:
            return as_export(&fake_dialog_library::show_protect);
        case dialog::chronel_ordinal:
            return as_export(&fake_dialog_library::show_chronels);
        default:
            return nullptr;
    }
}

BOOL WINAPI fake_dialog_library::free_library(HMODULE library) {
    if (library != fake_handle()) {
        return current->free_patch_.original()(library);
    }
    current->events_.emplace_back("free");
    return TRUE;
}

std::uint32_t WINAPI fake_dialog_library::show_protect(dialog::ProtectDialogRequest* request) {
    current->events_.emplace_back("show 17");
    return current->protect ? current->protect(*request) : 0;
}

std::uint32_t WINAPI fake_dialog_library::show_chronels(dialog::ChronelDialogRequest* request,
                                                        dialog::ChronelDialogResult* result) {
    current->events_.emplace_back("show 47");
    return current->chronels ? current->chronels(*request, *result) : 0;
}

}  // namespace ov::test
