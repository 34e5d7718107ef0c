#include "testkit/imports/absent_driver.h"

#include <string_view>

#include "ovufc/ipc/drvport/wire.h"

namespace ov::test {
namespace {

absent_driver* current = nullptr;

}  // namespace

absent_driver::absent_driver(HMODULE module) : patch_(module, "kernel32.dll", "CreateFileW", open) {
    current = this;
}

absent_driver::~absent_driver() {
    current = nullptr;
}

HANDLE WINAPI absent_driver::open(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                  DWORD disposition, DWORD flags, HANDLE pattern) {
    if (std::wstring_view(path) == ORV_DEVICE_PATH) {
        ++current->opens_;
        SetLastError(ERROR_FILE_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    return current->patch_.original()(path, access, share, security, disposition, flags, pattern);
}

}  // namespace ov::test
