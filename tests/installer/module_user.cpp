#include <windows.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <cstdio>
#include <string>

// A program that uses the installed module as Explorer does, finding it by the registry alone:
//
//     module_user            says which file was loaded, its version and the title of its folder menu
//     module_user FILE       the same, makes FILE, and goes on using the module until somebody deletes FILE
//
// Ends with 1 and the failing call when the module cannot be used.

namespace {

using Microsoft::WRL::ComPtr;

constexpr CLSID clsid_shell_extension = {
    0x3C41A7E2, 0x6B0D, 0x4F93, {0x9E, 0x25, 0x7A, 0x1D, 0x0C, 0x6B, 0x2E, 0x48}};

int fail(const char* call, HRESULT result) {
    printf("%s: 0x%08lX\n", call, static_cast<unsigned long>(result));
    return 1;
}

/// The version in the resources of the loaded image: the file of that name may be another one by now.
std::string version_of(HMODULE library) {
    const HRSRC found = FindResourceW(library, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
    const HGLOBAL block = found == nullptr ? nullptr : LoadResource(library, found);
    if (block == nullptr) {
        return "none";
    }
    // The fixed part stands behind length, value length, type and the key L"VS_VERSION_INFO", on a multiple
    // of four.
    const auto* bytes = static_cast<const unsigned char*>(LockResource(block));
    const auto* fixed = reinterpret_cast<const VS_FIXEDFILEINFO*>(bytes + 40);
    char text[32];
    snprintf(text, sizeof(text), "%u.%u.%u", static_cast<unsigned>(HIWORD(fixed->dwFileVersionMS)),
             static_cast<unsigned>(LOWORD(fixed->dwFileVersionMS)),
             static_cast<unsigned>(HIWORD(fixed->dwFileVersionLS)));
    return text;
}

HRESULT data_object_of_a_folder(IDataObject** result) {
    PIDLIST_ABSOLUTE id = nullptr;
    HRESULT outcome = SHParseDisplayName(L"C:\\windows", nullptr, &id, 0, nullptr);
    if (FAILED(outcome)) {
        return outcome;
    }
    ComPtr<IShellFolder> parent;
    PCUITEMID_CHILD child = nullptr;
    outcome = SHBindToParent(id, IID_PPV_ARGS(&parent), &child);
    if (SUCCEEDED(outcome)) {
        outcome = parent->GetUIObjectOf(nullptr, 1, &child, IID_IDataObject, nullptr,
                                        reinterpret_cast<void**>(result));
    }
    CoTaskMemFree(id);
    return outcome;
}

/// The text of the first item, which comes out of the library of texts beside the module.
std::wstring first_item_of(IContextMenu* menu) {
    const HMENU items = CreatePopupMenu();
    wchar_t text[256] = L"";
    if (SUCCEEDED(menu->QueryContextMenu(items, 0, 1, 0x7FFF, CMF_NORMAL))) {
        for (int i = 0; i < GetMenuItemCount(items) && text[0] == L'\0'; ++i) {
            GetMenuStringW(items, i, text, ARRAYSIZE(text), MF_BYPOSITION);
        }
    }
    DestroyMenu(items);
    return text;
}

int use_module(const char* file) {
    ComPtr<IShellExtInit> extension;
    HRESULT result = CoCreateInstance(clsid_shell_extension, nullptr, CLSCTX_INPROC_SERVER, IID_IShellExtInit,
                                      reinterpret_cast<void**>(extension.GetAddressOf()));
    if (FAILED(result)) {
        return fail("CoCreateInstance", result);
    }
    const HMODULE library = GetModuleHandleW(L"orvshellext.dll");
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(library, path, MAX_PATH);
    ComPtr<IDataObject> selection;
    result = data_object_of_a_folder(&selection);
    if (FAILED(result)) {
        return fail("GetUIObjectOf", result);
    }
    extension->Initialize(nullptr, selection.Get(), nullptr);
    ComPtr<IContextMenu> menu;
    if (FAILED(extension.As(&menu))) {
        return fail("IContextMenu", E_NOINTERFACE);
    }
    printf("%ls, version %s, menu '%ls'\n", path, version_of(library).c_str(),
           first_item_of(menu.Get()).c_str());
    fflush(stdout);
    if (file != nullptr) {
        CloseHandle(CreateFileA(file, GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
        while (GetFileAttributesA(file) != INVALID_FILE_ATTRIBUTES) {
            Sleep(50);
        }
        printf("still '%ls'\n", first_item_of(menu.Get()).c_str());
    }
    return 0;
}

}  // namespace

int main(int count, char** words) {
    const HRESULT started = OleInitialize(nullptr);
    if (FAILED(started)) {
        return fail("OleInitialize", started);
    }
    const int result = use_module(count > 1 ? words[1] : nullptr);
    OleUninitialize();
    return result;
}
