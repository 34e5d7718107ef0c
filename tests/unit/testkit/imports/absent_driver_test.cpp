#include "testkit/imports/absent_driver.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "ovufc/ipc/drvport/wire.h"
#include "ovufc/win/handle.h"

namespace {

ov::win::unique_file open(const wchar_t* path) {
    return ov::win::unique_file(
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
}

TEST(AbsentDriver, device_is_not_found_and_other_files_are) {
    const ov::test::absent_driver no_driver(GetModuleHandleW(nullptr));
    EXPECT_FALSE(open(ORV_DEVICE_PATH));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_TRUE(open(L"C:\\windows\\system32\\kernel32.dll"));
    EXPECT_EQ(no_driver.opens(), 1);
}

}  // namespace
