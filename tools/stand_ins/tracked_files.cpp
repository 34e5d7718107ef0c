#include "tools/stand_ins/tracked_files.h"

#include <shlwapi.h>

#include <array>
#include <memory>
#include <vector>

#include "testkit/imports/import_patch.h"
#include "tools/stand_ins/system_function.h"

namespace ov::stand_ins {

namespace {

constexpr DWORD tracked_file_tag = 0x51;

constexpr const char* function_name = "GetFileInformationByHandleEx";
using function_type = decltype(GetFileInformationByHandleEx);

/// The system's own function, also when this program's import of it has been pointed here.
function_type* system_function() noexcept {
    static const auto function = stand_ins::system_function<function_type>(L"kernel32.dll", function_name);
    return function;
}

/// Wine's volumes say of themselves that they keep no reparse points.
bool system_volume_keeps_marks() noexcept {
    std::array<wchar_t, MAX_PATH> root{};
    DWORD flags = 0;
    GetSystemWindowsDirectoryW(root.data(), MAX_PATH);
    return PathStripToRootW(root.data()) &&
           GetVolumeInformationW(root.data(), nullptr, 0, nullptr, nullptr, &flags, nullptr, 0) &&
           (flags & FILE_SUPPORTS_REPARSE_POINTS) != 0;
}

BOOL WINAPI get_file_information(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, LPVOID buffer,
                                 DWORD size_bytes) {
    if (!system_function()(file, kind, buffer, size_bytes)) {
        return FALSE;
    }
    if (kind == FileAttributeTagInfo) {
        auto& answer = *static_cast<FILE_ATTRIBUTE_TAG_INFO*>(buffer);
        if ((answer.FileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0) {
            answer.FileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
            answer.ReparseTag = tracked_file_tag;
        }
    }
    return TRUE;
}

}  // namespace

bool answer_tracked_mark(HMODULE module) {
    if (system_volume_keeps_marks() || !test::imports(module, "*", function_name)) {
        return false;
    }
    static std::vector<std::unique_ptr<test::import_patch<function_type>>> answered;
    answered.push_back(std::make_unique<test::import_patch<function_type>>(module, "*", function_name,
                                                                           &get_file_information));
    return true;
}

}  // namespace ov::stand_ins
