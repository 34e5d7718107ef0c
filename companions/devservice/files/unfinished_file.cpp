#include "companions/devservice/files/unfinished_file.h"

#include "companions/devservice/files/path.h"

namespace ov::devservice {
namespace {

bool delete_on_close(HANDLE file, bool wanted) noexcept {
    FILE_DISPOSITION_INFO disposition{};
    disposition.DeleteFile = wanted ? TRUE : FALSE;
    return SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition) != FALSE;
}

}  // namespace

DWORD unfinished_file::make(const std::wstring& path) {
    file_.reset(CreateFileW(long_form(path).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ,
                            nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file_) {
        return GetLastError();
    }
    if (!delete_on_close(file_.get(), true)) {
        const DWORD error = GetLastError();
        file_.reset();
        DeleteFileW(long_form(path).c_str());
        return error;
    }
    return ERROR_SUCCESS;
}

DWORD unfinished_file::finish() {
    const bool stays = FlushFileBuffers(file_.get()) && delete_on_close(file_.get(), false);
    const DWORD error = stays ? ERROR_SUCCESS : GetLastError();
    file_.reset();
    return error;
}

}  // namespace ov::devservice
