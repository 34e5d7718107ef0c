#include "installer/actions/server_call.h"

#include <ole2.h>

#include "ovufc/win/handle.h"

namespace ov::setup {
namespace {

using entry_point_type = HRESULT(WINAPI*)();

HRESULT call(const std::wstring& path, const char* entry_point) {
    const win::unique_library library(LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (!library) {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    // Through a plain function pointer: this compiler warns of a cast between two kinds of them.
    const auto function = reinterpret_cast<void (*)()>(GetProcAddress(library.get(), entry_point));
    if (function == nullptr) {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    return reinterpret_cast<entry_point_type>(function)();
}

}  // namespace

HRESULT call_server(const std::wstring& path, const char* entry_point) {
    const HRESULT started = OleInitialize(nullptr);
    const HRESULT result = call(path, entry_point);
    if (SUCCEEDED(started)) {
        OleUninitialize();
    }
    return result;
}

}  // namespace ov::setup
