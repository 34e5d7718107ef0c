#include "shell/entry_menus/elevation.h"

#include <objbase.h>
#include <shlobj.h>

#include <array>
#include <string>

namespace ov::shell {

namespace {

// Text of a class id with its braces, and room to spare.
constexpr int class_id_chars = 50;

std::wstring elevation_moniker(REFCLSID class_id) {
    std::array<wchar_t, class_id_chars> text{};
    StringFromGUID2(class_id, text.data(), class_id_chars);
    return std::wstring(L"Elevation:Administrator!new:") + text.data();
}

}  // namespace

// https://learn.microsoft.com/en-us/windows/win32/com/the-com-elevation-moniker
Microsoft::WRL::ComPtr<IFileOperation> ask_for_elevation() {
    BIND_OPTS3 options{};
#ifdef _WIN64
    static_assert(sizeof options == 48);
#endif
    options.cbStruct = sizeof options;
    options.dwClassContext = CLSCTX_LOCAL_SERVER;
    Microsoft::WRL::ComPtr<IFileOperation> consent;
    const HRESULT result =
        CoGetObject(elevation_moniker(CLSID_FileOperation).c_str(), &options, IID_PPV_ARGS(&consent));
    if (FAILED(result)) {
        consent.Reset();
    }
    return consent;
}

}  // namespace ov::shell
