#include "shell/file_menu/tracked_file.h"

#include <windows.h>

#include "ovufc/win/handle.h"

namespace ov::shell {

namespace {

// The reparse tag that the driver puts on files whose history it keeps.
constexpr DWORD tracked_file_tag = 0x51;

}  // namespace

bool is_tracked_file(const std::wstring& path) noexcept {
    const win::unique_file file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                            OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    FILE_ATTRIBUTE_TAG_INFO info{};
    return file &&
           GetFileInformationByHandleEx(file.get(), FileAttributeTagInfo, &info, sizeof info) != FALSE &&
           info.ReparseTag == tracked_file_tag && (info.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

}  // namespace ov::shell
