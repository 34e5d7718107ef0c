#include "tools/shellhost/product_module.h"

#include <objbase.h>
#include <shlwapi.h>
#include <wrl/client.h>

#include <algorithm>
#include <array>

#include "module/state/class_ids.h"
#include "ovufc/win/handle.h"
#include "tools/shellhost/command_failure.h"
#include "tools/shellhost/console.h"
#include "tools/stand_ins/menus/registry_value.h"
#include "tools/stand_ins/supply.h"
#include "tools/stand_ins/tracked_files.h"

namespace ov::shellhost {

namespace {

constexpr std::array product_classes = {class_ids::shell_extension, class_ids::namespace_folder,
                                        class_ids::one_click_restore, class_ids::addons};
constexpr int guid_chars = 39;

using get_class_object = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

}  // namespace

std::wstring registered_module_of(const CLSID& clsid) {
    std::array<wchar_t, guid_chars> text{};
    StringFromGUID2(clsid, text.data(), guid_chars);
    const std::wstring key = std::wstring(L"CLSID\\") + text.data() + L"\\InprocServer32";
    return stand_ins::read_registry_text(HKEY_CLASSES_ROOT, key.c_str(), nullptr);
}

product_module::product_module(const std::wstring& path, bool as_tracked) : as_tracked_(as_tracked) {
    if (!path.empty()) {
        load(path);
    } else {
        load_registered();
    }
}

product_module::~product_module() {
    for (const DWORD registration : registrations_) {
        CoRevokeClassObject(registration);
    }
}

void product_module::supply(HMODULE module, const std::wstring& path) const {
    const std::wstring file = PathFindFileNameW(path.c_str());
    std::wstring list;
    for (const std::string& name : stand_ins::supply_missing(module)) {
        list += (list.empty() ? L"" : L", ") + std::wstring(name.begin(), name.end());
    }
    print_note(list.empty()
                   ? L"This system has every function that " + file + L" imports; none is supplied."
                   : L"This system lacks these; supplied through the import table of " + file + L": " + list);
    if (as_tracked_ && stand_ins::answer_tracked_mark(module)) {
        print_note(L"No file system here keeps the mark of a tracked file; " + file +
                   L" is told that every file has it.");
    }
}

void product_module::load(const std::wstring& path) {
    std::array<wchar_t, 32768> full{};
    GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    // The class objects' code must outlive every object; it stays until the process ends.
    const HMODULE module = LoadLibraryExW(full.data(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module == nullptr) {
        throw command_failure(L"the module " + path + L" cannot be loaded: " +
                              describe(HRESULT_FROM_WIN32(GetLastError())));
    }
    supply(module, full.data());
    const auto get = reinterpret_cast<get_class_object>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    for (const CLSID& clsid : product_classes) {
        Microsoft::WRL::ComPtr<IUnknown> object;
        DWORD registration = 0;
        if (get != nullptr && SUCCEEDED(get(clsid, IID_PPV_ARGS(object.GetAddressOf()))) &&
            SUCCEEDED(CoRegisterClassObject(clsid, object.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                            &registration))) {
            registrations_.push_back(registration);
        }
    }
    if (registrations_.empty()) {
        throw command_failure(L"the module " + path + L" has none of the product's classes");
    }
}

void product_module::load_registered() {
    std::vector<std::wstring> seen;
    for (const CLSID& clsid : product_classes) {
        const std::wstring path = registered_module_of(clsid);
        if (path.empty() || std::find(seen.begin(), seen.end(), path) != seen.end()) {
            continue;
        }
        seen.push_back(path);
        win::unique_library module(LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
        if (module) {
            supply(module.get(), path);  // What was supplied stays loaded.
        } else {
            print_error(L"the registered module " + path + L" cannot be loaded: " +
                        describe(HRESULT_FROM_WIN32(GetLastError())));
        }
    }
}

}  // namespace ov::shellhost
