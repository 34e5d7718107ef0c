#include "tests/module/menus/file_menu/tracked_file_fixture.h"

namespace ov::test {

namespace {

constexpr DWORD tracked_file_tag = 0x51;

BOOL WINAPI answer_with_tag(HANDLE /*file*/, FILE_INFO_BY_HANDLE_CLASS kind, LPVOID buffer, DWORD size) {
    if (kind != FileAttributeTagInfo || size != sizeof(FILE_ATTRIBUTE_TAG_INFO)) {
        return FALSE;
    }
    *static_cast<FILE_ATTRIBUTE_TAG_INFO*>(buffer) = {FILE_ATTRIBUTE_REPARSE_POINT, tracked_file_tag};
    return TRUE;
}

}  // namespace

tracked_file_fixture::tracked_file_fixture()
    : file_(folder_.make_file(L"report \u00e4.docx", "text")),
      patch_(module_.handle(), "kernel32.dll", "GetFileInformationByHandleEx", &answer_with_tag) {}

}  // namespace ov::test
